#include "scripted_model/scripted_decoder.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <sstream>
#include <stdexcept>

namespace {

constexpr int codeLength = CodeBook::length;
constexpr int blockA = 0;
constexpr int blockB = codeLength;
constexpr int flagBlock = 2 * codeLength;
constexpr int flagCount = ScriptedDecoder::width - flagBlock;

enum Flag { startFlag, taskFlag, firstWindowFlag };
constexpr int mostWindows = flagCount - firstWindowFlag + 1;

enum Token {
    endOfText = 50257,
    startOfTranscript = 50258,
    english = 50259,
    transcribe = 50359,
    firstTimestamp = 50364,
    lastTimestamp = firstTimestamp + 1500,
};

constexpr float flagAfterNorm = 3.0F;
constexpr float copyStrength = 32.0F; // of A over B
constexpr float finalStrength = 16.0F;
constexpr int mostTokensOfAWindow = 200;

// Scores of the attention, before the division by the root of the head's width: all positions look at the start of
// the transcript, but a task position looks at the highest window flag where there is one.
constexpr float startQuery = 8.0F;
constexpr float startKey = 16.0F;
constexpr float taskQuery = 8.0F;
constexpr float windowKey = 8.5F;

std::vector<float> normalized(const std::vector<float> &values)
{
    const auto count = static_cast<float>(values.size());
    const float mean = std::accumulate(values.begin(), values.end(), 0.0F) / count;
    float squares = 0.0F;
    for (const float value : values)
        squares += (value - mean) * (value - mean);
    const float scale = 1.0F / std::sqrt(squares / count + 1e-5F);
    std::vector<float> result;
    for (const float value : values)
        result.push_back((value - mean) * scale);
    return result;
}

std::size_t at(int row, int column, int columns = ScriptedDecoder::width)
{
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) + static_cast<std::size_t>(column);
}

ScriptedDecoder::Matrix zeros(int rows, int columns = ScriptedDecoder::width)
{
    return ScriptedDecoder::Matrix(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns), 0.0F);
}

std::vector<std::string> wordsOf(const std::string &text)
{
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(" " + word);
    if (words.empty())
        throw std::runtime_error("a line of the script has no word");
    return words;
}

} // namespace

ScriptedDecoder::ScriptedDecoder(const std::vector<std::vector<ScriptedLine>> &windows)
{
    if (windows.empty() || static_cast<int>(windows.size()) > mostWindows)
        throw std::runtime_error("a script has 1 to " + std::to_string(mostWindows) + " windows");
    chain(windows);
}

void ScriptedDecoder::chain(const std::vector<std::vector<ScriptedLine>> &windows)
{
    m_codes.add(english);
    m_codes.add(endOfText);
    link(startOfTranscript, english);
    setFlag(startOfTranscript, startFlag);
    for (std::size_t w = 0; w < windows.size(); ++w) {
        int previous = transcribe;
        int tokens = 0;
        if (windows[w].empty() || windows[w].front().start > 1.0)
            throw std::runtime_error("the first line of a window starts within its first second");
        for (const ScriptedLine &line : windows[w]) {
            const int start = timestamp(line.start);
            if (previous == transcribe)
                m_firstTimes.push_back(start);
            else
                link(previous, start);
            previous = start;
            for (const std::string &text : wordsOf(line.text)) {
                const int word = firstWord + static_cast<int>(m_words.size());
                m_words.push_back(text);
                m_codes.add(word);
                link(previous, word);
                previous = word;
                ++tokens;
            }
            const int end = timestamp(line.end);
            link(previous, end);
            if (&line == &windows[w].back())
                setFlag(previous, firstWindowFlag + static_cast<int>(w));
            previous = end;
            tokens += 2;
        }
        link(previous, endOfText);
        if (tokens > mostTokensOfAWindow)
            throw std::runtime_error("a window of the script has more than 200 tokens");
    }
    link(transcribe, m_firstTimes.front());
    setFlag(transcribe, taskFlag);
}

int ScriptedDecoder::timestamp(double seconds)
{
    // Tokens of time have a step of 0.02 s; one that is taken moves on by a step.
    int token = firstTimestamp + static_cast<int>(std::lround(seconds * 50.0));
    while (m_codes.holds(token))
        ++token;
    if (token < firstTimestamp || token > lastTimestamp)
        throw std::runtime_error("a time of the script lies outside of its window");
    m_codes.add(token);
    return token;
}

void ScriptedDecoder::link(int token, int next)
{
    m_next[token] = next;
}

void ScriptedDecoder::setFlag(int token, int flag)
{
    m_flags[token] = flag;
}

ScriptedDecoder::State ScriptedDecoder::row(int token) const
{
    State state(width, 0.0F);
    const auto place = [&state, this](int block, int codeToken) {
        const CodeBook::Code &code = m_codes.of(codeToken);
        std::copy(code.begin(), code.end(), state.begin() + block);
    };
    if (const auto next = m_next.find(token); next != m_next.end())
        place(blockA, next->second);
    if (m_codes.holds(token))
        place(blockB, token);
    if (const auto flag = m_flags.find(token); flag != m_flags.end()) {
        float &value = state[static_cast<std::size_t>(flagBlock + flag->second)];
        value = flagAfterNorm;
        for (int i = 0; i < 100; ++i) // the norm depends on the flag; this converges
            value *= flagAfterNorm / normalized(state)[static_cast<std::size_t>(flagBlock + flag->second)];
    }
    return state;
}

ScriptedDecoder::Matrix ScriptedDecoder::embedding() const
{
    Matrix matrix = zeros(vocabularySize);
    for (int token = 0; token < vocabularySize; ++token) {
        if (m_next.contains(token) || m_codes.holds(token)) {
            const State state = row(token);
            std::copy(state.begin(), state.end(), matrix.begin() + static_cast<std::ptrdiff_t>(at(token, 0)));
        }
    }
    return matrix;
}

// Head 0 uses two of its values for the scores, 0 for the start and 1 for the windows, and as many for what is seen
// as there are windows.

ScriptedDecoder::Matrix ScriptedDecoder::query() const
{
    Matrix matrix = zeros(width);
    matrix[at(1, flagBlock + taskFlag)] = taskQuery;
    return matrix;
}

std::vector<float> ScriptedDecoder::queryBias() const
{
    std::vector<float> bias(width, 0.0F);
    bias[0] = startQuery;
    return bias;
}

ScriptedDecoder::Matrix ScriptedDecoder::key() const
{
    Matrix matrix = zeros(width);
    matrix[at(0, flagBlock + startFlag)] = startKey;
    for (int w = 0; w < static_cast<int>(m_firstTimes.size()); ++w)
        matrix[at(1, flagBlock + firstWindowFlag + w)] = windowKey * static_cast<float>(w + 1);
    return matrix;
}

ScriptedDecoder::Matrix ScriptedDecoder::value() const
{
    Matrix matrix = zeros(width);
    for (int w = 0; w < static_cast<int>(m_firstTimes.size()); ++w)
        matrix[at(w, flagBlock + firstWindowFlag + w)] = 1.0F / flagAfterNorm;
    return matrix;
}

ScriptedDecoder::Matrix ScriptedDecoder::output() const
{
    Matrix matrix = zeros(width);
    const CodeBook::Code &first = m_codes.of(m_firstTimes.front());
    for (std::size_t w = 0; w < m_firstTimes.size(); ++w) {
        const CodeBook::Code &next = m_codes.of(m_firstTimes[(w + 1) % m_firstTimes.size()]);
        for (int i = 0; i < codeLength; ++i) {
            const auto position = static_cast<std::size_t>(i);
            matrix[at(blockA + i, static_cast<int>(w))] = next[position] - first[position];
        }
    }
    return matrix;
}

// gelu(z) - gelu(-z) = z, so a pair of opposite rows passes a value through the activation unchanged.

ScriptedDecoder::Matrix ScriptedDecoder::mlpIn() const
{
    Matrix matrix = zeros(4 * width);
    for (int i = 0; i < codeLength; ++i) {
        matrix[at(i, blockA + i)] = 1.0F;
        matrix[at(codeLength + i, blockA + i)] = -1.0F;
    }
    return matrix;
}

ScriptedDecoder::Matrix ScriptedDecoder::mlpOut() const
{
    Matrix matrix = zeros(width, 4 * width);
    for (int i = 0; i < codeLength; ++i) {
        matrix[at(blockB + i, i, 4 * width)] = copyStrength;
        matrix[at(blockB + i, codeLength + i, 4 * width)] = -copyStrength;
    }
    return matrix;
}

std::vector<float> ScriptedDecoder::finalNorm() const
{
    std::vector<float> weight(width, 0.0F);
    std::fill_n(weight.begin() + blockB, codeLength, finalStrength);
    return weight;
}

float ScriptedDecoder::smallestGap() const
{
    float smallest = 1e9F;
    for (const auto &[token, next] : m_next)
        smallest = std::min(smallest, gap(row(token), next));
    const Matrix seen = output();
    for (std::size_t w = 0; w < m_firstTimes.size(); ++w) {
        State state = row(transcribe);
        for (int i = 0; i < width; ++i)
            state[static_cast<std::size_t>(i)] += seen[at(i, static_cast<int>(w))];
        smallest = std::min(smallest, gap(state, m_firstTimes[(w + 1) % m_firstTimes.size()]));
    }
    return smallest;
}

/// How far the logit of `expected` lies above all others, for a position in `state` behind the attention.
float ScriptedDecoder::gap(State state, int expected) const
{
    const State copied = normalized(state);
    for (int i = 0; i < codeLength; ++i)
        state[static_cast<std::size_t>(blockB + i)] += copyStrength * copied[static_cast<std::size_t>(blockA + i)];
    const State last = normalized(state);
    const auto logit = [&last, this](int token) {
        const CodeBook::Code &code = m_codes.of(token);
        return finalStrength * std::inner_product(code.begin(), code.end(), last.begin() + blockB, 0.0F);
    };
    float highest = 0.0F; // of the tokens that are in no script
    for (const auto &[token, next] : m_next) {
        if (m_codes.holds(token) && token != expected)
            highest = std::max(highest, logit(token));
    }
    if (endOfText != expected)
        highest = std::max(highest, logit(endOfText));
    return logit(expected) - highest;
}
