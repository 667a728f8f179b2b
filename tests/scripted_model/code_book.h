#pragma once

#include <array>
#include <random>
#include <vector>

/// Words of plus and minus one that are far from each other, one for each token of a script.
class CodeBook {
public:
    static constexpr int length = 52;
    using Code = std::array<float, length>;

    /// Gives `token` a new code, whose dot product with each one before is at most 20 in size.
    void add(int token);

    /// The code of a token that was added.
    const Code &of(int token) const;
    bool holds(int token) const;

private:
    bool fits(const Code &candidate) const;

    std::mt19937 m_random{20};
    std::vector<int> m_tokens;
    std::vector<Code> m_codes;
};

float dotProduct(const CodeBook::Code &left, const CodeBook::Code &right);
