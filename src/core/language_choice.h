#pragma once

#include <QObject>
#include <QObjectBindableProperty>
#include <QStringList>

namespace sorvanta {

/// The language picker of a transcription screen. Main thread only.
class LanguageChoice : public QObject {
    Q_OBJECT
    Q_PROPERTY(QStringList labels READ labels CONSTANT)
    Q_PROPERTY(int index READ index WRITE choose NOTIFY languageChanged)

public:
    using QObject::QObject;

    /// The rows, for example "German (de)".
    static QStringList labels();

    /// The chosen code; "auto" at first.
    const QString &language() const { return m_language.value(); }
    void setLanguage(const QString &code) { m_language = code; }

    /// The row of the chosen code, -1 for one that has none.
    int index() const;
    void choose(int index);

    Q_SIGNAL void languageChanged();

private:
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(LanguageChoice, QString, m_language, QStringLiteral("auto"),
                                         &LanguageChoice::languageChanged)
};

} // namespace sorvanta
