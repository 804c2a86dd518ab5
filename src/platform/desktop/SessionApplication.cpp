#include "platform/desktop/SessionApplication.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QEventLoop>
#include <QVariantMap>

namespace zelnor::platform {

namespace {

using std::chrono_literals::operator""ms;
using std::chrono_literals::operator""s;

constexpr const char* kName = "org.zelnor.Zelnor";
constexpr const char* kPath = "/org/zelnor/Zelnor";
constexpr const char* kInterface = "org.freedesktop.Application";
/// How long a start waits for the bus or for the process that started before.
constexpr auto kPatience = 2000ms;
constexpr auto kBetweenLooks = 1s;

// Of the DBus interface of the bus itself.
constexpr unsigned kDoNotQueue = 4;
constexpr unsigned kPrimaryOwner = 1;
constexpr unsigned kAlreadyOwner = 4;

QString text(const char* ascii) { return QString::fromLatin1(ascii); }

/// Waits for an answer, handling events. Nothing if there is none in time.
QDBusMessage answerTo(const QDBusPendingCall& call) {
  QEventLoop untilAnswered;
  const QDBusPendingCallWatcher watcher(call);
  QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &untilAnswered, &QEventLoop::quit);
  if (!watcher.isFinished()) untilAnswered.exec();
  return watcher.reply();
}

QDBusMessage nameRequest() {
  auto request =
      QDBusMessage::createMethodCall(text("org.freedesktop.DBus"), text("/org/freedesktop/DBus"),
                                     text("org.freedesktop.DBus"), text("RequestName"));
  request << text(kName) << kDoNotQueue;
  return request;
}

bool givesName(const QDBusMessage& answer) {
  const auto code = answer.arguments().value(0).toUInt();
  return code == kPrimaryOwner || code == kAlreadyOwner;
}

QVariantMap platformData(const Activation& activation) {
  if (activation.token.empty()) return {};
  const auto token = QString::fromStdString(activation.token);
  return {{text("activation-token"), token}, {text("desktop-startup-id"), token}};
}

Activation activationIn(const QVariantMap& platformData) {
  const auto token = platformData.value(text("activation-token"));
  const auto id = platformData.value(text("desktop-startup-id"));
  return {(token.isValid() ? token : id).toString().toStdString()};
}

/// What others call.
class Adaptor final : public QDBusAbstractAdaptor {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

 public:
  explicit Adaptor(SessionApplication& owner) : QDBusAbstractAdaptor(&owner), owner_(owner) {}

 public Q_SLOTS:
  void Activate(const QVariantMap& data) { Q_EMIT owner_.activated(activationIn(data)); }
  /// Files are not opened: showing the program is the best answer.
  void Open(const QStringList& /*uris*/, const QVariantMap& data) { Activate(data); }
  void ActivateAction(const QString& action, const QVariantList& /*parameter*/,
                      const QVariantMap& data) {
    Q_EMIT owner_.actionActivated(action, activationIn(data));
  }

 private:
  SessionApplication& owner_;
};

}  // namespace

SessionApplication::SessionApplication()
    : connection_(QStringLiteral("zelnor-%1").arg(reinterpret_cast<quintptr>(this))),
      bus_(connection_) {
  new Adaptor(*this);
  retry_.setInterval(kBetweenLooks);
  connect(&retry_, &QTimer::timeout, this, &SessionApplication::reconnect);
}

SessionApplication::~SessionApplication() { QDBusConnection::disconnectFromBus(connection_); }

void SessionApplication::connectToBus() {
  QDBusConnection::disconnectFromBus(connection_);
  bus_ = QDBusConnection::connectToBus(QDBusConnection::SessionBus, connection_);
  if (!bus_.isConnected()) return;
  // Before the name, so that whoever finds the name finds the object.
  bus_.registerObject(text(kPath), this);
  bus_.connect({}, text("/org/freedesktop/DBus/Local"), text("org.freedesktop.DBus.Local"),
               text("Disconnected"), this, SLOT(disconnected()));
}

SessionApplication::Standing SessionApplication::claim() {
  connectToBus();
  if (!bus_.isConnected()) return Standing::noBus;
  const auto answer = answerTo(bus_.asyncCall(nameRequest(), kPatience.count()));
  if (answer.type() != QDBusMessage::ReplyMessage) return Standing::noBus;
  return givesName(answer) ? Standing::first : Standing::second;
}

bool SessionApplication::forward(const QString& action, const Activation& activation) {
  auto call =
      QDBusMessage::createMethodCall(text(kName), text(kPath), text(kInterface),
                                     text(action.isEmpty() ? "Activate" : "ActivateAction"));
  if (!action.isEmpty()) call << action << QVariantList();
  call << platformData(activation);
  const auto answer = answerTo(bus_.asyncCall(call, kPatience.count()));
  return answer.type() == QDBusMessage::ReplyMessage;
}

void SessionApplication::disconnected() { retry_.start(); }

void SessionApplication::reconnect() {
  connectToBus();
  if (!bus_.isConnected()) return;
  retry_.stop();
  bus_.asyncCall(nameRequest());
}

}  // namespace zelnor::platform

#include "SessionApplication.moc"
