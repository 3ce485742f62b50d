#include "platform/linux/LinuxEntryPoints.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QVariantMap>

#include "util/log.h"

namespace {

constexpr auto kService = "com.orrinvale.Trovast";
constexpr auto kPath = "/com/orrinvale/Trovast";
constexpr auto kInterface = "org.freedesktop.Application";
constexpr int kAnswerTimeout = 5000;  // ms that the other instance has to answer

QString text(const char* ascii) {
    return QString::fromLatin1(ascii);
}

void tellOtherInstance(QDBusConnection& bus, const EntryPoints::Wish& wish) {
    if (wish.urls.empty() && wish.action.empty()) return;
    auto call = QDBusMessage::createMethodCall(text(kService), text(kPath), text(kInterface),
                                               text(wish.urls.empty() ? "ActivateAction" : "Open"));
    if (wish.urls.empty()) {
        call << QString::fromStdString(wish.action) << QVariantList() << QVariantMap();
    } else {
        QStringList urls;
        for (const std::string& url : wish.urls) urls << QString::fromStdString(url);
        call << urls << QVariantMap();
    }
    const QDBusMessage answer = bus.call(call, QDBus::Block, kAnswerTimeout);
    if (answer.type() == QDBusMessage::ErrorMessage)
        logError("The running instance did not answer: %s", qPrintable(answer.errorMessage()));
}

}  // namespace

/// Answers by hand: no argument is ever taken for a command.
class LinuxEntryPoints::Object : public QDBusVirtualObject {
  public:
    explicit Object(Requests requests) : requests_(std::move(requests)) {}

    QString introspect(const QString&) const override {
        return QStringLiteral(
            "<interface name='org.freedesktop.Application'>"
            "<method name='Activate'><arg type='a{sv}' direction='in'/></method>"
            "<method name='Open'><arg type='as' direction='in'/>"
            "<arg type='a{sv}' direction='in'/></method>"
            "<method name='ActivateAction'><arg type='s' direction='in'/>"
            "<arg type='av' direction='in'/><arg type='a{sv}' direction='in'/></method>"
            "</interface>");
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        if (message.interface() != text(kInterface)) return false;
        const std::function<void()> request = requestOf(message);
        if (!request) {
            bus.send(message.createErrorReply(QDBusError::InvalidArgs,
                                              QStringLiteral("Not a request of this program")));
            return true;
        }
        bus.send(message.createReply());  // first: the caller need not wait for the window
        request();
        return true;
    }

  private:
    /// Empty for what is no request.
    std::function<void()> requestOf(const QDBusMessage& message) const {
        const QString member = message.member(), signature = message.signature();
        if (member == QLatin1String("Activate") && signature == QLatin1String("a{sv}"))
            return requests_.activate;
        if (member == QLatin1String("Open") && signature == QLatin1String("asa{sv}")) {
            std::vector<std::string> urls;
            for (const QString& url : message.arguments().at(0).toStringList())
                urls.push_back(url.toStdString());
            return [open = requests_.open, urls = std::move(urls)] {
                if (open) open(urls);
            };
        }
        if (member == QLatin1String("ActivateAction") && signature == QLatin1String("sava{sv}")) {
            const auto found =
                requests_.actions.find(message.arguments().at(0).toString().toStdString());
            if (found != requests_.actions.end()) return found->second;
        }
        return {};
    }

    const Requests requests_;
};

LinuxEntryPoints::LinuxEntryPoints() = default;

LinuxEntryPoints::~LinuxEntryPoints() {
    if (!object_) return;
    auto bus = QDBusConnection::sessionBus();
    bus.unregisterService(text(kService));
    bus.unregisterObject(text(kPath));
}

bool LinuxEntryPoints::claim(Requests requests, const Wish& wish) {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        logWarning("No session bus: a second start opens a second window");
        return true;
    }
    // The object first: whoever waits for the name calls it as soon as the name is there.
    object_ = std::make_unique<Object>(std::move(requests));
    bus.registerVirtualObject(text(kPath), object_.get());
    if (bus.registerService(text(kService))) return true;
    bus.unregisterObject(text(kPath));
    object_.reset();
    tellOtherInstance(bus, wish);
    return false;
}
