#include "shell/theme.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QDebug>
#include <QFile>
#include <QPalette>

#include <optional>

static void initResources() { Q_INIT_RESOURCE(shell); }

namespace
{
struct ColourRow {
    const char* name; // as it stands in the style sheet, between "@"
    const char* light;
    const char* dark;
};

constexpr ColourRow colours[] = {
    {"window", "#f2f4f7", "#14181f"},   {"surface", "#ffffff", "#1d232d"},
    {"border", "#d5dae1", "#343e4d"},   {"text", "#1b212b", "#e9ecf1"},
    {"muted", "#566070", "#a7b1bf"},    {"accent", "#b0440c", "#f08a4b"},
    {"onAccent", "#ffffff", "#14181f"}, {"hover", "#8f3609", "#f5a06c"},
    {"track", "#e3e7ec", "#2a323e"},    {"titleBar", "#1b2330", "#0d1015"},
    {"disabled", "#e3e7ec", "#2a323e"}, {"onDisabled", "#6a7382", "#8b95a4"},
    {"focus", "#1f6fd1", "#7db4ff"},    {"progress", "#f3b792", "#96501f"},
    {"outline", "#7c8696", "#6a7689"},  {"checkImage", "check", "check_dark"}, // an image's name
};

constexpr auto portalService = "org.freedesktop.portal.Desktop";
constexpr auto portalPath = "/org/freedesktop/portal/desktop";
constexpr auto portalInterface = "org.freedesktop.portal.Settings";
constexpr auto appearanceGroup = "org.freedesktop.appearance";
constexpr auto schemeKey = "color-scheme";

QString colourOf(const ColourRow& row, Theme::Scheme scheme)
{
    return QLatin1String(scheme == Theme::Scheme::Dark ? row.dark : row.light);
}

QPalette paletteOf(Theme::Scheme scheme)
{
    const auto colour = [scheme](const char* name) { return Theme::colour(QLatin1String(name), scheme); };
    QPalette palette;
    palette.setColor(QPalette::Window, colour("window"));
    palette.setColor(QPalette::WindowText, colour("text"));
    palette.setColor(QPalette::Base, colour("surface"));
    palette.setColor(QPalette::AlternateBase, colour("window"));
    palette.setColor(QPalette::Text, colour("text"));
    palette.setColor(QPalette::Button, colour("surface"));
    palette.setColor(QPalette::ButtonText, colour("text"));
    palette.setColor(QPalette::ToolTipBase, colour("surface"));
    palette.setColor(QPalette::ToolTipText, colour("text"));
    palette.setColor(QPalette::Highlight, colour("accent"));
    palette.setColor(QPalette::HighlightedText, colour("onAccent"));
    palette.setColor(QPalette::Link, colour("focus"));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, colour("onDisabled"));
    return palette;
}

/** The portal's values: 1 prefers dark, 2 prefers light, 0 has no preference. */
std::optional<Theme::Scheme> schemeOfPortal(QVariant value)
{
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    switch (value.toUInt()) {
    case 1:
        return Theme::Scheme::Dark;
    case 2:
        return Theme::Scheme::Light;
    default:
        return std::nullopt;
    }
}
} // namespace

QColor Theme::colour(const QString& name, Scheme scheme)
{
    for (const auto& row : colours) {
        if (name == QLatin1String(row.name))
            return QColor(colourOf(row, scheme));
    }
    return {};
}

Theme::Theme(QApplication* app) : m_app(app)
{
    initResources();
    const auto preferred = schemeOfToolkit();
    QApplication::setStyle(QStringLiteral("Fusion"));
    apply(preferred);
    followDesktop();
}

Theme::Scheme Theme::schemeOfToolkit() const
{
    const auto gtkTheme = qEnvironmentVariable("GTK_THEME");
    if (!gtkTheme.isEmpty())
        return gtkTheme.contains(QLatin1String("dark"), Qt::CaseInsensitive) ? Scheme::Dark : Scheme::Light;
    const auto palette = QApplication::palette();
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness()
               ? Scheme::Dark
               : Scheme::Light;
}

// Asks without waiting: start-up must not hang on a desktop that does not answer.
void Theme::followDesktop()
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.connect(QString(), QLatin1String(portalPath), QLatin1String(portalInterface),
                QStringLiteral("SettingChanged"), this,
                SLOT(onDesktopSettingChanged(QString, QString, QDBusVariant)));
    auto call = QDBusMessage::createMethodCall(QLatin1String(portalService), QLatin1String(portalPath),
                                               QLatin1String(portalInterface), QStringLiteral("Read"));
    call << QString::fromLatin1(appearanceGroup) << QString::fromLatin1(schemeKey);
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QVariant> reply = *watcher;
        if (!reply.isError()) {
            if (const auto scheme = schemeOfPortal(reply.value()))
                apply(*scheme);
        }
        watcher->deleteLater();
    });
}

void Theme::onDesktopSettingChanged(const QString& group, const QString& key, const QDBusVariant& value)
{
    if (group != QLatin1String(appearanceGroup) || key != QLatin1String(schemeKey))
        return;
    if (const auto scheme = schemeOfPortal(value.variant()))
        apply(*scheme);
}

void Theme::apply(Scheme scheme)
{
    m_scheme = scheme;
    QFile file(QStringLiteral(":/stylesheet.qss"));
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning() << "Couldn't open stylesheet.qss";
        return;
    }
    auto sheet = QString::fromUtf8(file.readAll());
    for (const auto& row : colours)
        sheet.replace(QStringLiteral("@%1@").arg(QLatin1String(row.name)), colourOf(row, scheme));
    QApplication::setPalette(paletteOf(scheme));
    m_app->setStyleSheet(sheet);
}
