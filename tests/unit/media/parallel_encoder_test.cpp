#include "platform/media/parallel_encoder.h"

#include "platform/media/audio_writer.h"
#include "platform/media/media_duration.h"
#include "support/media_files.h"
#include "support/printing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

using namespace sorvanta;

namespace {

using Search = AudioFileSettings::AacSearch;

constexpr int rate = 44100;
constexpr int frame = 1024;
/// Where the second stretch begins in the file, in frames: the first packet holds what stands before time zero.
constexpr int joint = ParallelEncoder::stretch * frame - frame;

AudioFileSettings settings(Search search)
{
    return {AudioFileSettings::Container::M4a, rate, 2, 128000, search, false};
}

/// A tone that changes, with a little noise, and with a click before, at and behind the joint.
std::vector<float> changingSound(int frames)
{
    std::mt19937 random(5);
    std::uniform_real_distribution<double> noise(-0.01, 0.01);
    std::vector<float> samples;
    samples.reserve(2 * static_cast<std::size_t>(frames));
    for (int i = 0; i < frames; ++i) {
        const double t = static_cast<double>(i) / rate;
        const double click = std::abs(i - joint) % (frame / 2) < 8 && std::abs(i - joint) < 4 * frame ? 0.5 : 0;
        const double value =
            0.3 * std::sin(2 * std::numbers::pi * (300 + 100 * std::sin(t)) * t) * std::sin(3 * t) + noise(random);
        samples.push_back(static_cast<float>(value + click));
        samples.push_back(static_cast<float>(0.5 * value));
    }
    return samples;
}

QString write(const MediaFolder &folder, const QString &name, Search search, const std::vector<float> &samples,
              std::size_t piece = 3000)
{
    AudioWriter writer(folder.path(name), settings(search));
    for (std::size_t i = 0; i < samples.size(); i += piece)
        writer.append(std::as_bytes(std::span(samples).subspan(i, std::min(piece, samples.size() - i))));
    EXPECT_TRUE(writer.finish());
    return folder.path(name);
}

double error(const std::vector<double> &decoded, const std::vector<float> &sound, int from, int to)
{
    double sum = 0;
    for (int i = from; i < to; ++i) {
        const auto at = static_cast<std::size_t>(i);
        sum += std::pow(decoded[at] - static_cast<double>(sound[2 * at]), 2);
    }
    return std::sqrt(sum / (to - from));
}

TEST(ParallelEncoder, joinsStretchesAsIfOneEncoderHadMadeThemAll)
{
    MediaFolder folder;
    const std::vector<float> sound = changingSound(joint + 6 * rate);
    const auto plain = samplesOf(write(folder, u"plain.m4a"_qs, Search::Fast, sound));
    const auto parallel = samplesOf(write(folder, u"parallel.m4a"_qs, Search::FastInParallel, sound));
    ASSERT_EQ(parallel.size(), plain.size());
    for (int from = joint - 8 * frame; from < joint + 8 * frame; from += frame / 2) {
        const double usual = error(plain, sound, from, from + frame / 2);
        EXPECT_LT(error(parallel, sound, from, from + frame / 2), 1.5 * usual + 0.002) << from - joint;
    }
    EXPECT_NEAR(error(parallel, sound, joint, joint + 5 * rate), error(plain, sound, joint, joint + 5 * rate), 0.001);
}

TEST(ParallelEncoder, givesTheSameHoweverTheSoundIsCutUp)
{
    MediaFolder folder;
    const std::vector<float> sound = changingSound(joint + rate);
    const auto one = samplesOf(write(folder, u"one.m4a"_qs, Search::FastInParallel, sound, sound.size()));
    const auto many = samplesOf(write(folder, u"many.m4a"_qs, Search::FastInParallel, sound, 778));
    EXPECT_EQ(one, many);
}

class LengthOfStretches : public testing::TestWithParam<int> { };

TEST_P(LengthOfStretches, isKeptToTheFrame)
{
    MediaFolder folder;
    const std::vector<float> sound(2 * static_cast<std::size_t>(GetParam()), 0.1F);
    const QString path = write(folder, u"a.m4a"_qs, Search::FastInParallel, sound);
    EXPECT_NEAR(mediaDuration(path) * rate, GetParam(), 0.1);
}

INSTANTIATE_TEST_SUITE_P(AroundTheJoints, LengthOfStretches,
                         testing::Values(1, frame, ParallelEncoder::stretch *frame - 1, ParallelEncoder::stretch *frame,
                                         (ParallelEncoder::stretch + 1) * frame,
                                         (ParallelEncoder::stretch + 1) * frame + 1,
                                         2 * ParallelEncoder::stretch * frame + 7));

TEST(ParallelEncoder, letsSilenceInLikeSound)
{
    MediaFolder folder;
    AudioWriter writer(folder.path(u"a.m4a"_qs), settings(Search::FastInParallel));
    EXPECT_TRUE(writer.appendSilence(100 * rate + 1));
    EXPECT_TRUE(writer.finish());
    EXPECT_NEAR(mediaDuration(folder.path(u"a.m4a"_qs)) * rate, 100 * rate + 1, 0.1);
}

} // namespace
