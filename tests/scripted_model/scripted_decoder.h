#pragma once

#include "scripted_model/code_book.h"
#include "scripted_model/scripted_model.h"

#include <map>
#include <string>
#include <vector>

/// The weights of a decoder that recites a script.
///
/// The state of a position has 128 values: block A, the code of the next token; block B, the token's own code; flags.
/// The MLP of the one layer copies A over B, and the logits, being products with the embedding, are highest for the
/// token whose code stands in B. The self-attention lets the task position see which window was recited last.
class ScriptedDecoder {
public:
    static constexpr int width = 128;
    static constexpr int vocabularySize = 51865;
    static constexpr int firstWord = 256;

    using Matrix = std::vector<float>; ///< rows one behind the other

    explicit ScriptedDecoder(const std::vector<std::vector<ScriptedLine>> &windows);

    /// The texts of the tokens from `firstWord` on.
    const std::vector<std::string> &words() const { return m_words; }

    Matrix embedding() const; ///< vocabularySize x width
    Matrix query() const; ///< width x width, as all of the attention
    std::vector<float> queryBias() const;
    Matrix key() const;
    Matrix value() const;
    Matrix output() const;
    Matrix mlpIn() const; ///< 4 width x width
    Matrix mlpOut() const; ///< width x 4 width
    std::vector<float> finalNorm() const;

    /// The smallest distance between the logit of the token that is to come and that of any other, over the whole
    /// script. Below 30 the engine's sampling might choose another.
    float smallestGap() const;

private:
    using State = std::vector<float>;

    void chain(const std::vector<std::vector<ScriptedLine>> &windows);
    int timestamp(double seconds);
    void link(int token, int next);
    void setFlag(int token, int flag);
    State row(int token) const;
    float gap(State state, int expected) const;

    CodeBook m_codes;
    std::vector<std::string> m_words;
    std::map<int, int> m_next;
    std::map<int, int> m_flags; // token -> index of its flag
    std::vector<int> m_firstTimes; // of each window
};
