#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <utility>

namespace sorvanta {

/// A text in the form in which LowerCaseSearch looks through it, as UTF-8: lower-cased without the rules of any
/// language, and canonically composed. Any thread.
QByteArray lowerCaseForm(QStringView text);

/// A text to look for in others, whatever the case of their letters. Canonically equivalent texts are equal; "e" is not
/// in "é", however that is written. Letters that only fold to the same, such as "ß" and "ss", differ. Any thread.
class LowerCaseSearch {
public:
    /// @param needle found everywhere if it is empty
    explicit LowerCaseSearch(QStringView needle);

    /// The needle as lowerCaseForm() gives it.
    const QByteArray &form() const { return m_form; }

    enum class Found {
        Nowhere, ///< no needle that holds this one is found either
        CutOff, ///< only where marks behind it make other characters of it; a needle that holds them may be found
        Whole,
    };

    /// Whether the needle is in `text`, which is a lowerCaseForm(), or several with a byte 0xFF between them.
    Found find(QByteArrayView text) const;

private:
    bool isCutOff(QByteArrayView rest) const;

    QByteArray m_form;
    QString m_text;
};

} // namespace sorvanta
