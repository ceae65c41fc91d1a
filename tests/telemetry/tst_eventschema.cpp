#include "tests/testkit/testmain.h"

#include <QProcess>

#include <velkor_launcher/gateway.pb.h>
#include <velkor_launcher/launcher.pb.h>

using namespace velkor_launcher;

/**
 * Field numbers are the contract with the gateway. The generic decoder knows nothing of our schema and shows
 * the bare numbers.
 */
class TestEventSchema : public QObject
{
    Q_OBJECT

private:
    /** "1 { 1: 5 } 2: \"x\"": numbers and values of the encoded message. */
    static QString numbersOf(const google::protobuf::Message& message)
    {
        QProcess decoder;
        decoder.start("protoc", {"--decode_raw"});
        decoder.write(QByteArray::fromStdString(message.SerializeAsString()));
        decoder.closeWriteChannel();
        decoder.waitForFinished();
        return QString::fromUtf8(decoder.readAllStandardOutput()).simplified();
    }
    template <typename Message>
    static QString numbersOf(void (*fill)(Message*))
    {
        Message message;
        fill(&message);
        return numbersOf(message);
    }

private slots:
    void buildingBlocks()
    {
        QCOMPARE(numbersOf<ClientOptions>([](auto* m) { m->set_bitness(ClientOptions::BITNESS_64); }),
                 QString("1: 2"));
        QCOMPARE(numbersOf<Application>([](auto* m) {
                     m->set_version("v");
                     m->set_build_tag(Application::DEV);
                     m->set_locale(Application::CHINA);
                 }),
                 "1: \"v\" 2: 2 3: 1");
        QCOMPARE(numbersOf<OS>([](auto* m) {
                     m->set_kind(OS::LINUX);
                     m->set_version("12");
                 }),
                 "1: 2 2: \"12\"");
        QCOMPARE(numbersOf<OS>([](auto* m) { m->set_kind(OS::WINDOWS); }), QString(""));
        QCOMPARE(numbersOf<Host>([](auto* m) {
                     m->set_md5_hash("h");
                     m->set_mac_address("a");
                     m->mutable_os()->set_kind(OS::MAC);
                 }),
                 "1: \"h\" 2: \"a\" 4 { 1: 3 }");
        QCOMPARE(numbersOf<Event>([](auto* m) {
                     m->mutable_payload()->set_type_url("t");
                     m->set_md5_session("s");
                 }),
                 "2 { 1: \"t\" } 3: \"s\"");
    }

    void payloads()
    {
        const auto time = [](auto* timestamp) { timestamp->set_seconds(5); };
        Installed installed;
        time(installed.mutable_install_time());
        QCOMPARE(numbersOf(installed), QString("1 { 1: 5 }"));
        Started started;
        time(started.mutable_start_time());
        started.mutable_host()->set_md5_hash("h");
        started.mutable_application()->set_version("v");
        QCOMPARE(numbersOf(started), QString("1 { 1: 5 } 2 { 1: \"h\" } 3 { 1: \"v\" }"));
        UpdateStarted update;
        time(update.mutable_start_time());
        update.set_target_version("v");
        QCOMPARE(numbersOf(update), QString("1 { 1: 5 } 2: \"v\""));
        Shutdown shutdown;
        time(shutdown.mutable_shutdown_time());
        shutdown.set_clients_running(1);
        shutdown.set_clients_started(2);
        QCOMPARE(numbersOf(shutdown), QString("1 { 1: 5 } 2: 1 3: 2"));
        ClientInitiallyLaunched first;
        time(first.mutable_launch_time());
        first.set_target_server("ks");
        first.mutable_client_options()->set_bitness(ClientOptions::BITNESS_32);
        QCOMPARE(numbersOf(first), QString("1 { 1: 5 } 2: \"ks\" 3 { 1: 1 }"));
        ClientLaunched launched;
        time(launched.mutable_launch_time());
        launched.set_target_server("ks");
        launched.mutable_client_options()->set_bitness(ClientOptions::BITNESS_64);
        QCOMPARE(numbersOf(launched), QString("1 { 1: 5 } 2: \"ks\" 3 { 1: 2 }"));
        ClientUpdateStarted updateStarted;
        time(updateStarted.mutable_start_time());
        updateStarted.set_target_server("ks");
        QCOMPARE(numbersOf(updateStarted), QString("1 { 1: 5 } 2: \"ks\""));
        ClientUpdateCompleted completed;
        time(completed.mutable_completion_time());
        completed.set_target_server("ks");
        QCOMPARE(numbersOf(completed), QString("1 { 1: 5 } 2: \"ks\""));
        ClientUpdateFailed failed;
        time(failed.mutable_failure_time());
        failed.set_error_code(9);
        failed.set_target_server("ks");
        QCOMPARE(numbersOf(failed), QString("1 { 1: 5 } 2: 9 3: \"ks\""));
        LoginSucceeded login;
        time(login.mutable_login_time());
        login.mutable_user_id()->set_sequential(7);
        QCOMPARE(numbersOf(login), QString("1 { 1: 5 } 2 { 1: 7 }"));
    }

    void launchesOfWine()
    {
        ReleaseWineLaunched release;
        release.mutable_launch_time()->set_seconds(5);
        release.set_target_server("ks");
        release.set_wine_build("b");
        release.mutable_os()->set_version("12");
        release.set_directx_mode(graphics::DX11);
        QCOMPARE(numbersOf(release), QString("1 { 1: 5 } 2: \"ks\" 3: \"b\" 4 { 2: \"12\" } 5: 2"));
        DevelopmentWineLaunched development;
        development.mutable_launch_time()->set_seconds(5);
        development.set_target_server("ks");
        development.set_wine_branch("main");
        development.set_wine_build("b");
        development.mutable_os()->set_version("12");
        development.set_directx_mode(graphics::DX9);
        QCOMPARE(numbersOf(development),
                 QString("1 { 1: 5 } 2: \"ks\" 3: \"main\" 4: \"b\" 5 { 2: \"12\" } 6: 1"));
        CustomWineLaunched custom;
        custom.mutable_launch_time()->set_seconds(5);
        custom.set_target_server("ks");
        custom.mutable_os()->set_version("12");
        custom.set_directx_mode(graphics::DX9);
        QCOMPARE(numbersOf(custom), QString("1 { 1: 5 } 2: \"ks\" 3 { 2: \"12\" } 4: 1"));
    }

    void gatewayRecords()
    {
        gateway::Event event;
        event.mutable_timestamp()->set_seconds(5);
        event.set_uuid("u");
        event.set_publisher("p");
        event.mutable_launcher_event()->set_md5_session("s");
        event.mutable_launcher_ip_address()->set_v4(1);
        QCOMPARE(numbersOf(event), "1 { 1: 5 } 2: \"u\" 3: \"p\" 4 { 3: \"s\" } 5 { 1: 0x00000001 }");
        gateway::IPAddress address;
        address.set_v6("six");
        QCOMPARE(numbersOf(address), QString("2: \"six\""));
        gateway::DefaultResponse response;
        response.set_message("m");
        QCOMPARE(numbersOf(response), QString("1: \"m\""));
    }
};

VELKOR_TEST_MAIN(TestEventSchema)
#include "tst_eventschema.moc"
