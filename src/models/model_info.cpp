#include "models/model_info.h"

#include "platform/build_configuration.h"

namespace sorvanta {

namespace {

ModelInfo model(const char *id, const char *name, const char *fileName, const char *description)
{
    const QString file = QString::fromLatin1(fileName);
    return {
        .id = QString::fromLatin1(id),
        .name = QString::fromLatin1(name),
        .description = QString::fromLatin1(description),
        .fileName = file,
        .downloadURL = QUrl(buildConfiguration().modelServer + QStringLiteral("/OrvaneKest/whisper/resolve/main/")
                            + file + QStringLiteral("?download=true")),
    };
}

} // namespace

const QList<ModelInfo> &modelCatalogue()
{
    // Base stands ahead of Small.
    static const QList<ModelInfo> catalogue{
        model("large-v3-turbo", "Large V3 Turbo", "ggml-large-v3-turbo.bin",
              "Performance-optimized Large V3 variant. Offers faster processing with a slight "
              "accuracy trade-off. Recommended for English; may be less reliable on non-English "
              "audio compared to standard Large V3."),
        model("large-v3", "Large V3", "ggml-large-v3.bin",
              "Highest-accuracy model. Largest file size and slowest runtime. The only model "
              "recommended for high-quality non-English transcription."),
        model("medium", "Medium", "ggml-medium.bin",
              "Balanced model offering moderate speed and accuracy. Acceptable for English-only "
              "workflows, but not recommended for non-English audio."),
        model("base", "Base", "ggml-base.bin",
              "Baseline model with limited accuracy. Performs adequately for English, but is not "
              "recommended for non-English audio."),
        model("small", "Small", "ggml-small.bin",
              "Faster model with reduced accuracy. Best for English-only use cases where speed is "
              "prioritized. Not recommended for non-English audio."),
        model("tiny", "Tiny", "ggml-tiny.bin",
              "Smallest model. Suitable for basic English-only transcription. Very fast, but prone "
              "to errors. Not recommended for non-English audio."),
    };
    return catalogue;
}

} // namespace sorvanta
