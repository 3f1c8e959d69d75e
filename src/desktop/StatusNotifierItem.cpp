#include "desktop/StatusNotifierItem.h"

#include "desktop/DBusMenu.h"
#include "model/Logging.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <algorithm>

namespace lumetra {

namespace {

const QString kItemInterface = QStringLiteral("org.kde.StatusNotifierItem");

const char* const kIntrospection =
    "<property name=\"Category\" type=\"s\" access=\"read\"/>\n"
    "<property name=\"Id\" type=\"s\" access=\"read\"/>\n"
    "<property name=\"Title\" type=\"s\" access=\"read\"/>\n"
    "<property name=\"Status\" type=\"s\" access=\"read\"/>\n"
    "<property name=\"IconPixmap\" type=\"a(iiay)\" access=\"read\"/>\n"
    "<property name=\"ToolTip\" type=\"(sa(iiay)ss)\" access=\"read\"/>\n"
    "<property name=\"ItemIsMenu\" type=\"b\" access=\"read\"/>\n"
    "<property name=\"Menu\" type=\"o\" access=\"read\"/>\n"
    "<property name=\"XAyatanaLabel\" type=\"s\" access=\"read\"/>\n"
    "<property name=\"XAyatanaLabelGuide\" type=\"s\" access=\"read\"/>\n"
    "<signal name=\"NewIcon\"/>\n"
    "<signal name=\"NewToolTip\"/>\n"
    "<signal name=\"NewStatus\"><arg name=\"status\" type=\"s\"/></signal>\n"
    "<signal name=\"NewTitle\"/>\n"
    "<signal name=\"XAyatanaNewLabel\"><arg name=\"label\" type=\"s\"/>"
    "<arg name=\"guide\" type=\"s\"/></signal>\n"
    "<method name=\"Activate\"><arg name=\"x\" type=\"i\" direction=\"in\"/>"
    "<arg name=\"y\" type=\"i\" direction=\"in\"/></method>\n"
    "<method name=\"SecondaryActivate\"><arg name=\"x\" type=\"i\" direction=\"in\"/>"
    "<arg name=\"y\" type=\"i\" direction=\"in\"/></method>\n"
    "<method name=\"ContextMenu\"><arg name=\"x\" type=\"i\" direction=\"in\"/>"
    "<arg name=\"y\" type=\"i\" direction=\"in\"/></method>\n"
    "<method name=\"Scroll\"><arg name=\"delta\" type=\"i\" direction=\"in\"/>"
    "<arg name=\"orientation\" type=\"s\" direction=\"in\"/></method>\n";

void registerTypes() {
    static const bool once = [] {
        qDBusRegisterMetaType<StatusNotifierIconPixmap>();
        qDBusRegisterMetaType<StatusNotifierIconPixmaps>();
        return true;
    }();
    (void)once;
}

} // namespace

QString StatusNotifierItem::watcherService() {
    return QStringLiteral("org.kde.StatusNotifierWatcher");
}

QString StatusNotifierItem::objectPathName() {
    return QStringLiteral("/StatusNotifierItem");
}

QString StatusNotifierItem::menuPathName() {
    return QStringLiteral("/MenuBar");
}

StatusNotifierItem::StatusNotifierItem(const QDBusConnection& bus, DBusMenu& menu, QObject* parent)
    : StatusNotifierDBusObject(kItemInterface, QString::fromLatin1(kIntrospection), parent),
      connection_(bus), menu_(menu) {
    registerTypes();
    service_ =
        QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid());
}

StatusNotifierItem::~StatusNotifierItem() {
    if (started_)
        connection_.unregisterService(service_);
}

bool StatusNotifierItem::start() {
    if (started_)
        return true;
    if (!connection_.isConnected())
        return false;
    if (!exportOn(connection_, objectPathName()) || !menu_.exportOn(connection_, menuPathName())) {
        qCWarning(logUi).noquote() << "cannot export the panel item on the session bus";
        return false;
    }
    if (!connection_.registerService(service_))
        qCWarning(logUi).noquote() << "cannot own" << service_
                                   << "on the session bus:" << connection_.lastError().message();
    started_ = true;

    watcher_ = new QDBusServiceWatcher(watcherService(), connection_,
                                       QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& newOwner) {
                watcherOwnerChanged(newOwner);
            });
    // A host that drops the item while it still runs (GNOME's extension does when the item
    // registered while it was itself still starting) is asked again.
    const QString path = QStringLiteral("/StatusNotifierWatcher");
    connection_.connect(watcherService(), path, watcherService(),
                        QStringLiteral("StatusNotifierItemUnregistered"), this,
                        SLOT(itemUnregistered(QString)));
    connection_.connect(watcherService(), path, watcherService(),
                        QStringLiteral("StatusNotifierHostRegistered"), this,
                        SLOT(hostRegistered()));
    connection_.connect(watcherService(), path, watcherService(),
                        QStringLiteral("StatusNotifierHostUnregistered"), this,
                        SLOT(hostUnregistered()));
    retryTimer_.setSingleShot(true);
    connect(&retryTimer_, &QTimer::timeout, this, [this] {
        if (watcherPresent_)
            registerWithWatcher();
    });
    const QDBusReply<bool> present = connection_.interface()->isServiceRegistered(watcherService());
    watcherOwnerChanged(present.isValid() && present.value() ? QStringLiteral("present")
                                                             : QString());
    updateState();
    return true;
}

void StatusNotifierItem::setRetryDelays(int firstMs, int maxMs) {
    firstRetryDelayMs_ = std::max(1, firstMs);
    maxRetryDelayMs_ = std::max(firstRetryDelayMs_, maxMs);
    retryDelayMs_ = firstRetryDelayMs_;
}

bool StatusNotifierItem::namesThisItem(const QString& entry) const {
    // Watchers name items by bus name, "name/path" or "name@path".
    const QString unique = connection_.baseService();
    return entry == service_ || entry.startsWith(service_ + u'/') ||
           entry.startsWith(service_ + u'@') || entry.startsWith(unique + u'@') ||
           entry.startsWith(unique + u'/');
}

void StatusNotifierItem::itemUnregistered(const QString& service) {
    if (!namesThisItem(service) || !watcherPresent_)
        return;
    if (registered_ && registeredFor_.isValid() && registeredFor_.elapsed() >= maxRetryDelayMs_)
        retryDelayMs_ = firstRetryDelayMs_;
    qCInfo(logUi).noquote() << "the panel dropped lumetra's item; registering it again in"
                            << retryDelayMs_ << "ms";
    setRegistered(false);
    retryLater();
}

void StatusNotifierItem::hostRegistered() {
    hostPresent_ = true;
    // A new host may be the first that draws anything: whatever the pause, register now.
    if (watcherPresent_ && !registered_)
        registerNow();
    updateState();
}

void StatusNotifierItem::hostUnregistered() {
    // Other hosts may remain: ask.
    readHostPresent();
}

void StatusNotifierItem::watcherOwnerChanged(const QString& newOwner) {
    setRegistered(false);
    setWatcherPresent(!newOwner.isEmpty());
    refusal_.clear();
    hostPresent_ = true;
    if (!newOwner.isEmpty()) {
        readHostPresent();
        registerNow();
    } else {
        retryTimer_.stop();
    }
    updateState();
}

void StatusNotifierItem::registerNow() {
    retryTimer_.stop();
    retryDelayMs_ = firstRetryDelayMs_;
    registerWithWatcher();
}

void StatusNotifierItem::retryLater() {
    retryTimer_.start(retryDelayMs_);
    retryDelayMs_ = std::min(retryDelayMs_ * 2, maxRetryDelayMs_);
}

void StatusNotifierItem::readHostPresent() {
    QDBusMessage get = QDBusMessage::createMethodCall(
        watcherService(), QStringLiteral("/StatusNotifierWatcher"),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << watcherService() << QStringLiteral("IsStatusNotifierHostRegistered");
    auto* pending = new QDBusPendingCallWatcher(connection_.asyncCall(get), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                const QDBusPendingReply<QDBusVariant> reply = *finished;
                if (!watcherPresent_)
                    return;
                // A watcher that does not say is taken to have a host.
                hostPresent_ = reply.isError() || reply.value().variant().toBool();
                updateState();
            });
}

void StatusNotifierItem::registerWithWatcher() {
    // A watcher may have found the item by itself (GNOME's extension looks for items on the
    // bus when it starts), and registering it again there makes it rebuild the item, which
    // can fail: ask first.
    QDBusMessage get = QDBusMessage::createMethodCall(
        watcherService(), QStringLiteral("/StatusNotifierWatcher"),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << watcherService() << QStringLiteral("RegisteredStatusNotifierItems");
    auto* pending = new QDBusPendingCallWatcher(connection_.asyncCall(get), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                const QDBusPendingReply<QDBusVariant> reply = *finished;
                const QStringList items =
                    reply.isError() ? QStringList() : reply.value().variant().toStringList();
                if (!watcherPresent_)
                    return;
                if (std::any_of(items.begin(), items.end(),
                                [this](const QString& entry) { return namesThisItem(entry); }))
                    setRegistered(true);
                else
                    callRegister();
            });
}

void StatusNotifierItem::callRegister() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcherService(), QStringLiteral("/StatusNotifierWatcher"), watcherService(),
        QStringLiteral("RegisterStatusNotifierItem"));
    // Register the object path, not the bus name: the watcher then names the item by our unique
    // name. GNOME's AppIndicator extension watches a registered well-known name too, and when
    // that watch fires after its first read of the item it compares against a reset cache and
    // drops the item.
    call << objectPathName();
    auto* pending = new QDBusPendingCallWatcher(connection_.asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                const QDBusPendingReply<> reply = *finished;
                // A reply that arrives after the watcher went away counts for nothing.
                if (!watcherPresent_)
                    return;
                if (reply.isError()) {
                    refusal_ = reply.error().message();
                    if (refusal_.isEmpty())
                        refusal_ = reply.error().name();
                    updateState();
                    retryLater();
                    return;
                }
                refusal_.clear();
                setRegistered(true);
            });
}

void StatusNotifierItem::setWatcherPresent(bool present) {
    if (watcherPresent_ == present)
        return;
    watcherPresent_ = present;
    emit watcherPresentChanged();
}

void StatusNotifierItem::setRegistered(bool registered) {
    if (registered)
        registeredFor_.start();
    else
        registeredFor_.invalidate();
    if (registered_ == registered)
        return;
    registered_ = registered;
    emit registeredChanged();
    updateState();
}

void StatusNotifierItem::updateState() {
    using S = StatusNotifierState;
    S state = S::connecting;
    if (!started_)
        state = S::noBus;
    else if (!watcherPresent_)
        state = S::noWatcher;
    else if (!hostPresent_)
        state = S::noHost;
    else if (registered_)
        state = S::registered;
    else if (!refusal_.isEmpty())
        state = S::refused;
    if (state_ == state)
        return;
    state_ = state;
    emit stateChanged();
}

void StatusNotifierItem::setTitle(const QString& title) {
    if (title_ == title)
        return;
    title_ = title;
    emitSignal(QStringLiteral("NewTitle"));
}

bool StatusNotifierItem::setLabel(const QString& label, const QString& guide) {
    if (label_ == label && labelGuide_ == guide)
        return false;
    label_ = label;
    labelGuide_ = guide;
    emitSignal(QStringLiteral("XAyatanaNewLabel"), {label_, labelGuide_});
    return true;
}

bool StatusNotifierItem::setIconPixmaps(const StatusNotifierIconPixmaps& pixmaps) {
    return setIcon(iconName_, pixmaps);
}

bool StatusNotifierItem::setIcon(const QString& name, const StatusNotifierIconPixmaps& pixmaps) {
    if (iconName_ == name && pixmaps_ == pixmaps)
        return false;
    iconName_ = name;
    pixmaps_ = pixmaps;
    emitSignal(QStringLiteral("NewIcon"));
    return true;
}

void StatusNotifierItem::setToolTip(const QString& title, const QString& text) {
    if (toolTipTitle_ == title && toolTipText_ == text)
        return;
    toolTipTitle_ = title;
    toolTipText_ = text;
    toolTipAnnounced_ = false;
}

void StatusNotifierItem::announceToolTip() {
    if (toolTipAnnounced_)
        return;
    toolTipAnnounced_ = true;
    emitSignal(QStringLiteral("NewToolTip"));
}

QVariantMap StatusNotifierItem::properties() const {
    // (sa(iiay)ss): icon name, icon images, title, text. The panel draws the item's own icon.
    QDBusArgument toolTip;
    toolTip.beginStructure();
    toolTip << QString() << StatusNotifierIconPixmaps() << toolTipTitle_ << toolTipText_;
    toolTip.endStructure();
    QVariantMap properties{
        {QStringLiteral("Category"), QStringLiteral("SystemServices")},
        {QStringLiteral("Id"), id_},
        {QStringLiteral("Title"), title_},
        {QStringLiteral("Status"), QStringLiteral("Active")},
        {QStringLiteral("IconPixmap"), QVariant::fromValue(pixmaps_)},
        {QStringLiteral("ToolTip"), QVariant::fromValue(toolTip)},
        // Not a menu: a left click is Activate, which toggles the dashboard.
        {QStringLiteral("ItemIsMenu"), false},
        {QStringLiteral("Menu"), QVariant::fromValue(QDBusObjectPath(menuPathName()))},
        {QStringLiteral("XAyatanaLabel"), label_},
        {QStringLiteral("XAyatanaLabelGuide"), labelGuide_},
    };
    // Only when there is one: hosts take an empty name for a missing icon rather than
    // falling back to the pixmaps.
    if (!iconName_.isEmpty())
        properties.insert(QStringLiteral("IconName"), iconName_);
    return properties;
}

bool StatusNotifierItem::handleMethod(const QDBusMessage& message,
                                      const QDBusConnection& connection) {
    const QString member = message.member();
    const QVariantList arguments = message.arguments();
    const QString signature = message.signature();
    const QPoint position(arguments.value(0).toInt(), arguments.value(1).toInt());
    // Answer first: the reaction may open a window, and the host should not wait for it.
    if (signature == QLatin1String("ii") &&
        (member == QLatin1String("Activate") || member == QLatin1String("SecondaryActivate") ||
         member == QLatin1String("ContextMenu"))) {
        connection.send(message.createReply());
        if (member == QLatin1String("Activate"))
            emit activateRequested(position);
        else if (member == QLatin1String("SecondaryActivate"))
            emit secondaryActivateRequested(position);
        else
            emit contextMenuRequested(position);
        return true;
    }
    if (member == QLatin1String("Scroll") && signature == QLatin1String("is")) {
        connection.send(message.createReply());
        emit scrollRequested(arguments.value(0).toInt(), arguments.value(1).toString());
        return true;
    }
    return false;
}

} // namespace lumetra
