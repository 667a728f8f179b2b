#include "models/model_info.h"

#include "platform/build_configuration.h"
#include "support/printing.h"

#include <gtest/gtest.h>

using namespace sorvanta;

namespace {

struct Row {
    const char *id;
    const char *name;
    const char *fileName;
    const char *description;
};

const Row rows[] = {
    {"large-v3-turbo", "Large V3 Turbo", "ggml-large-v3-turbo.bin",
     "Performance-optimized Large V3 variant. Offers faster processing with a slight "
     "accuracy trade-off. Recommended for English; may be less reliable on non-English "
     "audio compared to standard Large V3."},
    {"large-v3", "Large V3", "ggml-large-v3.bin",
     "Highest-accuracy model. Largest file size and slowest runtime. The only model "
     "recommended for high-quality non-English transcription."},
    {"medium", "Medium", "ggml-medium.bin",
     "Balanced model offering moderate speed and accuracy. Acceptable for English-only "
     "workflows, but not recommended for non-English audio."},
    {"base", "Base", "ggml-base.bin",
     "Baseline model with limited accuracy. Performs adequately for English, but is not "
     "recommended for non-English audio."},
    {"small", "Small", "ggml-small.bin",
     "Faster model with reduced accuracy. Best for English-only use cases where speed is "
     "prioritized. Not recommended for non-English audio."},
    {"tiny", "Tiny", "ggml-tiny.bin",
     "Smallest model. Suitable for basic English-only transcription. Very fast, but prone "
     "to errors. Not recommended for non-English audio."},
};

TEST(ModelCatalogue, holdsSixModelsInTheirOrder)
{
    const QList<ModelInfo> &catalogue = modelCatalogue();
    ASSERT_EQ(catalogue.size(), 6);
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(catalogue[i].id, QLatin1String(rows[i].id));
        EXPECT_EQ(catalogue[i].name, QLatin1String(rows[i].name));
        EXPECT_EQ(catalogue[i].fileName, QLatin1String(rows[i].fileName));
        EXPECT_EQ(catalogue[i].description, QLatin1String(rows[i].description));
        EXPECT_EQ(catalogue[i].downloadURL.toString(), buildConfiguration().modelServer
                                                           + u"/OrvaneKest/whisper/resolve/main/"_qs
                                                           + catalogue[i].fileName + u"?download=true"_qs);
        EXPECT_EQ(catalogue[i].downloadURL.scheme(), u"https"_qs);
    }
}

} // namespace
