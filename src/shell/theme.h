#pragma once

#include <QColor>
#include <QObject>
#include <QVariant>

class QApplication;
class QDBusVariant;

/**
 * The look of all windows: one style sheet and palette for light desktops and one for dark ones. Follows the
 * desktop while the launcher runs, where the desktop announces its colours.
 */
class Theme : public QObject
{
    Q_OBJECT

public:
    enum class Scheme { Light, Dark };

    /** Applies the scheme that the desktop prefers. app is not owned and has to outlive this object. */
    explicit Theme(QApplication* app);

    Scheme scheme() const { return m_scheme; }
    /** A colour of the style sheet by its name there. */
    static QColor colour(const QString& name, Scheme scheme);
    void apply(Scheme scheme);

private slots:
    void onDesktopSettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    Scheme schemeOfToolkit() const;
    void followDesktop();

    QApplication* const m_app;
    Scheme m_scheme = Scheme::Light;
};
