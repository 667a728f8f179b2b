#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QProperty>
#include <QString>
#include <QVariant>

#include <chrono>
#include <optional>

namespace sorvanta {

/// What the desktop asks of the look of applications: dark or light colours, motion or none. Read from the settings of
/// the desktop portal and followed live. Without a bus, a portal or a wish, the palette of the application decides
/// about dark, and there is motion. Never blocks: the connection is made on the global thread pool, and until the
/// portal has answered the palette decides. Belongs to the main thread, and needs a QGuiApplication.
class ColorScheme : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isDark READ isDark NOTIFY isDarkChanged)
    Q_PROPERTY(bool hasReducedMotion READ hasReducedMotion NOTIFY hasReducedMotionChanged)
    Q_PROPERTY(bool isSettled READ isSettled NOTIFY isSettledChanged)

public:
    /// A window that waits for a slow desktop still comes soon.
    static constexpr std::chrono::milliseconds defaultWait{250};

    /// Listens on the session bus of the user.
    explicit ColorScheme(QObject *parent = nullptr);

    /// Listens on the bus at `busAddress`; an empty address means that there is no bus.
    /// @param longestWait how long the desktop is waited for before this counts as settled. Counted from the first turn
    ///        of the event loop: before, while the window is made, no answer can be heard.
    explicit ColorScheme(const QString &busAddress, std::chrono::milliseconds longestWait = defaultWait,
                         QObject *parent = nullptr);

    ~ColorScheme() override;

    bool isDark() const { return m_isDark; }
    bool hasReducedMotion() const { return m_hasReducedMotion; }
    /// Whether the desktop has been heard, or will not be waited for any longer: a window that is shown from now on
    /// begins in the right colours. True after the longest wait at the latest.
    bool isSettled() const { return m_isSettled; }

    bool eventFilter(QObject *watched, QEvent *event) override;

    Q_SIGNAL void isDarkChanged();
    Q_SIGNAL void hasReducedMotionChanged();
    Q_SIGNAL void isSettledChanged();

private:
    void listen(const QDBusConnection &bus);
    void take(const QString &group, const QString &key, const QVariant &value);
    Q_SLOT void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);

    QString m_connectionName;
    Q_OBJECT_BINDABLE_PROPERTY(ColorScheme, std::optional<bool>, m_wishedDark)
    Q_OBJECT_BINDABLE_PROPERTY(ColorScheme, bool, m_isPaletteDark)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ColorScheme, bool, m_reducesMotion, false)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ColorScheme, bool, m_hasAnimations, true)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ColorScheme, bool, m_isSettled, false, &ColorScheme::isSettledChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ColorScheme, bool, m_isDark, &ColorScheme::isDarkChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ColorScheme, bool, m_hasReducedMotion, &ColorScheme::hasReducedMotionChanged)
};

} // namespace sorvanta
