#pragma once

#include <QStringView>

#include <array>
#include <memory>
#include <optional>

namespace sorvanta {

/// A regular expression in ICU syntax without options. Unlike Qt's, its `\d` is every decimal digit, its `\s` every
/// White_Space character, and its `.` stops at each Unicode line break. Not for use from two threads at once.
class RegularExpression {
public:
    /// The whole match (0) and the groups (1 and up), as views into the searched text; null views for groups that
    /// took no part.
    class Match {
    public:
        QStringView group(int number) const { return m_groups.at(static_cast<std::size_t>(number)); }
        qsizetype start() const { return m_start; }
        qsizetype end() const { return m_start + m_groups[0].size(); }

    private:
        friend class RegularExpression;
        static constexpr std::size_t maximumGroups = 8;
        std::array<QStringView, maximumGroups> m_groups;
        qsizetype m_start = 0;
    };

    /// @param pattern at most seven groups; one that does not compile never matches
    explicit RegularExpression(QStringView pattern);
    ~RegularExpression();
    RegularExpression(const RegularExpression &) = delete;
    RegularExpression &operator=(const RegularExpression &) = delete;

    /// The first match at or behind `from`, or none. `text` must outlive the match; in one of 2^31 units or more
    /// nothing is found.
    std::optional<Match> firstMatch(QStringView text, qsizetype from = 0);

private:
    struct Matcher;
    std::unique_ptr<Matcher> m_matcher;
};

} // namespace sorvanta
