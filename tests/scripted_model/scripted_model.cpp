#include "scripted_model/scripted_model.h"

#include "scripted_model/scripted_decoder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <stdexcept>

namespace {

constexpr int width = ScriptedDecoder::width;
constexpr int audioContext = 1500;
constexpr int textContext = 448;
constexpr int melCount = 80;
constexpr int spectrumSize = 201;
constexpr float smallestAcceptedGap = 30.0F;

/// The half-precision number nearest to `value`, which must be zero or in the range of normal ones.
std::uint16_t halfPrecision(float value)
{
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    const std::uint32_t sign = bits >> 16 & 0x8000U;
    const std::uint32_t magnitude = bits & 0x7FFFFFFFU;
    constexpr std::uint32_t smallestNormal = 0x38800000U;
    if (magnitude < smallestNormal)
        return static_cast<std::uint16_t>(sign);
    return static_cast<std::uint16_t>(sign | ((magnitude - 0x38000000U + 0x1000U) >> 13));
}

/// Writes the ggml file, little-endian as the machine.
class ModelFile {
public:
    explicit ModelFile(const std::string &path)
        : m_file(path, std::ios::binary)
        , m_path(path)
    {
    }

    void integer(std::int32_t value) { m_file.write(reinterpret_cast<const char *>(&value), sizeof value); }

    void floats(const std::vector<float> &values)
    {
        m_file.write(reinterpret_cast<const char *>(values.data()),
                     static_cast<std::streamsize>(values.size() * sizeof(float)));
    }

    void text(const std::string &text)
    {
        integer(static_cast<std::int32_t>(text.size()));
        m_file.write(text.data(), static_cast<std::streamsize>(text.size()));
    }

    void tensor(const std::string &name, const std::vector<int> &dimensions, const std::vector<float> &values)
    {
        header(name, dimensions, 0);
        floats(values);
    }

    void halfTensor(const std::string &name, const std::vector<int> &dimensions, const std::vector<float> &values)
    {
        header(name, dimensions, 1);
        std::vector<std::uint16_t> halves;
        halves.reserve(values.size());
        for (const float value : values)
            halves.push_back(halfPrecision(value));
        m_file.write(reinterpret_cast<const char *>(halves.data()),
                     static_cast<std::streamsize>(halves.size() * sizeof(std::uint16_t)));
    }

    void close()
    {
        m_file.close();
        if (!m_file)
            throw std::runtime_error("cannot write " + m_path);
    }

private:
    void header(const std::string &name, const std::vector<int> &dimensions, int type)
    {
        integer(static_cast<std::int32_t>(dimensions.size()));
        integer(static_cast<std::int32_t>(name.size()));
        integer(type);
        for (const int dimension : dimensions)
            integer(dimension);
        m_file.write(name.data(), static_cast<std::streamsize>(name.size()));
    }

    std::ofstream m_file;
    std::string m_path;
};

std::vector<float> zeros(int count)
{
    return std::vector<float>(static_cast<std::size_t>(count), 0.0F);
}

std::vector<float> ones(int count)
{
    return std::vector<float>(static_cast<std::size_t>(count), 1.0F);
}

/// Triangles, evenly spaced on the mel scale (2595 log10(1 + f / 700)) up to 8 kHz.
std::vector<float> melFilters()
{
    const auto hertz = [](double mel) { return 700.0 * (std::pow(10.0, mel / 2595.0) - 1.0); };
    const double top = 2595.0 * std::log10(1.0 + 8000.0 / 700.0);
    std::vector<float> filters;
    for (int m = 0; m < melCount; ++m) {
        const double low = hertz(top * m / (melCount + 1));
        const double middle = hertz(top * (m + 1) / (melCount + 1));
        const double high = hertz(top * (m + 2) / (melCount + 1));
        for (int k = 0; k < spectrumSize; ++k) {
            const double frequency = 8000.0 * k / (spectrumSize - 1);
            const double height = std::min((frequency - low) / (middle - low), (high - frequency) / (high - middle));
            filters.push_back(static_cast<float>(std::max(0.0, height)));
        }
    }
    return filters;
}

/// The 256 single bytes in the order of GPT-2's vocabulary: the printable ones first.
std::vector<std::string> singleBytes()
{
    const auto isPrintable = [](int byte) {
        return (byte >= 33 && byte <= 126) || (byte >= 161 && byte <= 172) || byte >= 174;
    };
    std::vector<std::string> bytes;
    for (const bool printable : {true, false}) {
        for (int byte = 0; byte < 256; ++byte) {
            if (isPrintable(byte) == printable)
                bytes.emplace_back(1, static_cast<char>(byte));
        }
    }
    return bytes;
}

void writeHeader(ModelFile &file, int audioLayers)
{
    constexpr std::int32_t magic = 0x67676d6c;
    constexpr int heads = 2;
    constexpr int textLayers = 1;
    constexpr int halfPrecisionType = 1;
    for (const int value : {magic, ScriptedDecoder::vocabularySize, audioContext, width, heads, audioLayers,
                            textContext, width, heads, textLayers, melCount, halfPrecisionType})
        file.integer(value);
    file.integer(melCount);
    file.integer(spectrumSize);
    file.floats(melFilters());
}

void writeVocabulary(ModelFile &file, const std::vector<std::string> &words)
{
    std::vector<std::string> tokens = singleBytes();
    tokens.insert(tokens.end(), words.begin(), words.end());
    file.integer(static_cast<std::int32_t>(tokens.size()));
    for (const std::string &token : tokens)
        file.text(token);
}

void writeNorm(ModelFile &file, const std::string &name, const std::vector<float> &weight = ones(width))
{
    file.tensor(name + ".weight", {width}, weight);
    file.tensor(name + ".bias", {width}, zeros(width));
}

struct Attention {
    std::vector<float> query = zeros(width * width);
    std::vector<float> queryBias = zeros(width);
    std::vector<float> key = zeros(width * width);
    std::vector<float> value = zeros(width * width);
    std::vector<float> output = zeros(width * width);
};

void writeAttention(ModelFile &file, const std::string &name, const Attention &attention)
{
    writeNorm(file, name + "_ln");
    file.halfTensor(name + ".query.weight", {width, width}, attention.query);
    file.tensor(name + ".query.bias", {width}, attention.queryBias);
    file.halfTensor(name + ".key.weight", {width, width}, attention.key);
    file.halfTensor(name + ".value.weight", {width, width}, attention.value);
    file.tensor(name + ".value.bias", {width}, zeros(width));
    file.halfTensor(name + ".out.weight", {width, width}, attention.output);
    file.tensor(name + ".out.bias", {width}, zeros(width));
}

void writeMlp(ModelFile &file, const std::string &block, const std::vector<float> &in, const std::vector<float> &out)
{
    writeNorm(file, block + ".mlp_ln");
    file.halfTensor(block + ".mlp.0.weight", {width, 4 * width}, in);
    file.tensor(block + ".mlp.0.bias", {4 * width}, zeros(4 * width));
    file.halfTensor(block + ".mlp.2.weight", {4 * width, width}, out);
    file.tensor(block + ".mlp.2.bias", {width}, zeros(width));
}

void writeEncoder(ModelFile &file, int layers)
{
    file.tensor("encoder.positional_embedding", {width, audioContext}, zeros(width * audioContext));
    file.halfTensor("encoder.conv1.weight", {3, melCount, width}, zeros(3 * melCount * width));
    file.tensor("encoder.conv1.bias", {1, width}, zeros(width));
    file.halfTensor("encoder.conv2.weight", {3, width, width}, zeros(3 * width * width));
    file.tensor("encoder.conv2.bias", {1, width}, zeros(width));
    writeNorm(file, "encoder.ln_post");
    for (int i = 0; i < layers; ++i) {
        const std::string block = "encoder.blocks." + std::to_string(i);
        writeMlp(file, block, zeros(4 * width * width), zeros(4 * width * width));
        writeAttention(file, block + ".attn", {});
    }
}

void writeDecoder(ModelFile &file, const ScriptedDecoder &decoder)
{
    file.tensor("decoder.positional_embedding", {width, textContext}, zeros(width * textContext));
    file.halfTensor("decoder.token_embedding.weight", {width, ScriptedDecoder::vocabularySize}, decoder.embedding());
    writeNorm(file, "decoder.ln", decoder.finalNorm());
    const std::string block = "decoder.blocks.0";
    writeMlp(file, block, decoder.mlpIn(), decoder.mlpOut());
    writeAttention(file, block + ".attn",
                   {decoder.query(), decoder.queryBias(), decoder.key(), decoder.value(), decoder.output()});
    writeAttention(file, block + ".cross_attn", {});
}

} // namespace

void ScriptedModel::write(const std::string &path) const
{
    constexpr int mostLayers = 88;
    if (audioLayers < 1 || audioLayers > mostLayers)
        throw std::runtime_error("a model has 1 to 88 audio layers");
    const ScriptedDecoder decoder(windows);
    if (decoder.smallestGap() < smallestAcceptedGap)
        throw std::runtime_error("the script would not be recited for certain");
    ModelFile file(path);
    writeHeader(file, audioLayers);
    writeVocabulary(file, decoder.words());
    writeEncoder(file, audioLayers);
    writeDecoder(file, decoder);
    file.close();
}

ScriptedModel ScriptedModel::demonstration()
{
    return {
        .windows =
            {
                {
                    {0.0, 4.2, "This text is recited by a computed model."},
                    {4.2, 8.6, "It recognises nothing of what it is given."},
                    {8.6, 12.0, "- Who is speaking here?"},
                    {12.0, 16.5, "- Nobody is, the words stand in the model file."},
                    {16.5, 22.0, "The engine that runs it is the real one, with its real log and times."},
                    {22.0, 29.9, "A downloaded model takes its place, and then your own words appear."},
                },
                {
                    {0.1, 5.0, "The second half minute has lines of its own."},
                    {5.0, 12.4, "Grüße aus der zweiten Minute, один два три, 一二三."},
                    {12.4, 20.0, "Commas, \"quotes\" and <brackets> stand as they are."},
                    {20.0, 29.8, "So search and export have something to find."},
                },
                {
                    {0.3, 9.0, "This is the third and last window of the script."},
                    {9.0, 29.6, "After it the first one begins again."},
                },
            },
        .audioLayers = 1,
    };
}
