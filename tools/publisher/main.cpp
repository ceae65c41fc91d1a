#include "tools/publisher/buildpublisher.h"
#include "tools/publisher/launcherpublisher.h"
#include "tools/publisher/treeverifier.h"
#include "tools/publisher/winepublisher.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

namespace
{
constexpr auto usage = "Publishes builds as a tree of static files.\n\n"
                       "  velkor-publish build --server KEY --build BUILD --from GAMEDIR --out TREE\n"
                       "                       [--resources RESDIR] [--prefetch GLOB]... [--protected]\n"
                       "                       [--previous BUILD]... [--bundle]\n"
                       "  velkor-publish wine --version VERSION --from WINEDIR --out TREE [--dev]\n"
                       "  velkor-publish launcher --version VERSION --from DIR --out TREE\n"
                       "                       [--channel release|beta|dev]\n"
                       "  velkor-publish verify --out TREE";

int fail(const QString& message)
{
    std::fprintf(stderr, "velkor-publish: %s\n", qPrintable(message));
    return 1;
}

int build(const QCommandLineParser& parser)
{
    BuildOptions options;
    options.server = parser.value(QStringLiteral("server"));
    options.build = parser.value(QStringLiteral("build"));
    options.from = parser.value(QStringLiteral("from"));
    options.tree = parser.value(QStringLiteral("out"));
    options.resources = parser.value(QStringLiteral("resources"));
    options.prefetch = parser.values(QStringLiteral("prefetch"));
    options.isProtected = parser.isSet(QStringLiteral("protected"));
    options.previous = parser.values(QStringLiteral("previous"));
    options.bundle = parser.isSet(QStringLiteral("bundle"));
    BuildPublisher publisher(options);
    QString error;
    if (!publisher.publish(&error))
        return fail(error);
    std::printf("Published build %s of %s: %d files, %lld bytes\n", qPrintable(options.build),
                qPrintable(options.server), publisher.fileCount(), publisher.byteCount());
    if (!options.previous.isEmpty())
        std::printf("%d patches: %lld bytes instead of %lld\n", publisher.patchCount(),
                    publisher.patchByteCount(), publisher.patchedByteCount());
    return 0;
}

int wine(const QCommandLineParser& parser)
{
    WineOptions options;
    options.version = parser.value(QStringLiteral("version"));
    options.from = parser.value(QStringLiteral("from"));
    options.tree = parser.value(QStringLiteral("out"));
    options.isDevelopment = parser.isSet(QStringLiteral("dev"));
    WinePublisher publisher(options);
    QString error;
    if (!publisher.publish(&error))
        return fail(error);
    std::printf("Published Wine %s: %d files, %lld bytes\n", qPrintable(options.version),
                publisher.fileCount(), publisher.byteCount());
    return 0;
}

int launcher(const QCommandLineParser& parser)
{
    LauncherOptions options;
    options.version = parser.value(QStringLiteral("version"));
    options.from = parser.value(QStringLiteral("from"));
    options.tree = parser.value(QStringLiteral("out"));
    options.channel = parser.value(QStringLiteral("channel"));
    LauncherPublisher publisher(options);
    QString error;
    if (!publisher.publish(&error))
        return fail(error);
    std::printf("Published launcher %s for %s: %d files, %lld bytes\n", qPrintable(options.version),
                qPrintable(options.channel), publisher.fileCount(), publisher.byteCount());
    return 0;
}

int verify(const QCommandLineParser& parser)
{
    if (!parser.isSet(QStringLiteral("out")))
        return fail(QStringLiteral("verify needs --out"));
    TreeVerifier verifier(parser.value(QStringLiteral("out")));
    const auto problems = verifier.verify();
    for (const auto& problem : problems)
        std::printf("%s\n", qPrintable(problem));
    std::printf("%d files checked, %d problems\n", verifier.checkedFiles(), problems.size());
    return problems.isEmpty() ? 0 : 1;
}
} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QLatin1String(usage));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("command"),
                                 QStringLiteral("build, wine, launcher or verify"));
    parser.addOptions({
        {QStringLiteral("server"), QStringLiteral("Catalogue key of the server"), QStringLiteral("key")},
        {QStringLiteral("build"), QStringLiteral("Build number"), QStringLiteral("build")},
        {QStringLiteral("from"), QStringLiteral("Folder of the client's, runtime's or launcher's files"),
         QStringLiteral("folder")},
        {QStringLiteral("out"), QStringLiteral("The tree"), QStringLiteral("folder")},
        {QStringLiteral("resources"), QStringLiteral("Folder of the resource files"),
         QStringLiteral("folder")},
        {QStringLiteral("prefetch"), QStringLiteral("Resources that are fetched first"),
         QStringLiteral("glob")},
        {QStringLiteral("previous"), QStringLiteral("Makes patches from the files of this build"),
         QStringLiteral("build")},
        {QStringLiteral("bundle"), QStringLiteral("Makes bundles, for first installations")},
        {QStringLiteral("version"), QStringLiteral("Version of Wine or the launcher"),
         QStringLiteral("version")},
        {QStringLiteral("channel"), QStringLiteral("Who gets the launcher"), QStringLiteral("channel"),
         QStringLiteral("release")},
        {QStringLiteral("dev"), QStringLiteral("For those who want development versions of Wine")},
        {QStringLiteral("protected"), QStringLiteral("The index needs the player's token")},
    });
    parser.process(app);
    const auto command = parser.positionalArguments().value(0);
    if (command == QLatin1String("build"))
        return build(parser);
    if (command == QLatin1String("wine"))
        return wine(parser);
    if (command == QLatin1String("launcher"))
        return launcher(parser);
    if (command == QLatin1String("verify"))
        return verify(parser);
    return fail(QStringLiteral("the command must be build, wine, launcher or verify; see --help"));
}
