#include "scripted_model/code_book.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <stdexcept>

float dotProduct(const CodeBook::Code &left, const CodeBook::Code &right)
{
    return std::inner_product(left.begin(), left.end(), right.begin(), 0.0F);
}

void CodeBook::add(int token)
{
    constexpr int mostTries = 200000;
    Code candidate;
    std::fill(candidate.begin(), candidate.begin() + length / 2, 1.0F);
    std::fill(candidate.begin() + length / 2, candidate.end(), -1.0F);
    for (int i = 0; i < mostTries; ++i) {
        std::shuffle(candidate.begin(), candidate.end(), m_random);
        if (fits(candidate)) {
            m_tokens.push_back(token);
            m_codes.push_back(candidate);
            return;
        }
    }
    throw std::runtime_error("the script has too many words: no code is left");
}

bool CodeBook::fits(const Code &candidate) const
{
    constexpr float largestProduct = 20;
    return std::all_of(m_codes.begin(), m_codes.end(), [&candidate](const Code &code) {
        return std::abs(dotProduct(candidate, code)) <= largestProduct;
    });
}

bool CodeBook::holds(int token) const
{
    return std::find(m_tokens.begin(), m_tokens.end(), token) != m_tokens.end();
}

const CodeBook::Code &CodeBook::of(int token) const
{
    const auto position = std::find(m_tokens.begin(), m_tokens.end(), token);
    return m_codes.at(static_cast<std::size_t>(position - m_tokens.begin()));
}
