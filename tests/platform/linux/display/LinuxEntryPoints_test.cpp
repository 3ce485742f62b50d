#include "platform/linux/LinuxEntryPoints.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingReply>

#include "platform/linux/display/DisplayTest.h"

namespace {

class LinuxEntryPointsTest : public DisplayTest {
  protected:
    /// What a caller from outside is answered: "" or the name of an error.
    QString call(const char* method, const QVariantList& arguments) {
        QDBusConnection bus =
            QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("caller"));
        QDBusMessage message =
            QDBusMessage::createMethodCall("com.orrinvale.Trovast", "/com/orrinvale/Trovast",
                                           "org.freedesktop.Application", method);
        message.setArguments(arguments);
        QDBusPendingReply<> reply = bus.asyncCall(message);
        if (!soon([&] { return reply.isFinished(); })) return "no answer";
        return reply.isError() ? reply.error().name() : QString();
    }

    int activated = 0, toggled = 0;
    std::vector<std::string> opened;
};

}  // namespace

TEST_F(LinuxEntryPointsTest, RequestsFromOutsideArriveAndNothingElseIsTakenForOne) {
    LinuxEntryPoints entryPoints;
    ASSERT_TRUE(entryPoints.claim({.activate = [&] { activated++; },
                                   .actions = {{"toggle", [&] { toggled++; }}},
                                   .open = [&](auto urls) { opened = urls; }},
                                  {.action = "toggle"}));
    const QVariantMap data;
    EXPECT_EQ(call("Activate", {data}), "");
    EXPECT_EQ(activated, 1);
    EXPECT_EQ(call("ActivateAction", {"toggle", QVariantList(), data}), "");
    EXPECT_EQ(toggled, 1);
    EXPECT_EQ(call("Open", {QStringList{"trovast:a?b=%20c", "file:///tmp/x"}, data}), "");
    EXPECT_EQ(opened, (std::vector<std::string>{"trovast:a?b=%20c", "file:///tmp/x"}));

    const QString refused = "org.freedesktop.DBus.Error.InvalidArgs";
    EXPECT_EQ(call("ActivateAction", {"quit", QVariantList(), data}), refused);
    EXPECT_EQ(call("ActivateAction", {"toggle"}), refused);
    EXPECT_EQ(call("Open", {"file:///tmp/y", data}), refused);
    EXPECT_EQ(call("Activate", {}), refused);
    EXPECT_EQ(call("Quit", {}), refused);
    EXPECT_EQ(activated + toggled, 2);
    EXPECT_EQ(opened.size(), 2u);
}
