#include <libvue/platform/backend/qt/QtClipboard.h>

#include <utility>

#include <QByteArray>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QString>
#include <QStringList>

namespace libvue::backend {

namespace {

QString toQt(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

} // namespace

QtClipboard::QtClipboard(WindowServer& windows) : windows_(windows) {}

void QtClipboard::connect() {
    if (std::exchange(connected_, true)) return;
    QObject::connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, &context_, [this] { changed(); });
}

void QtClipboard::changed() {
    // Our own changes are counted where they are made, and announced by Qt at once or a little later.
    if (setting_ || QGuiApplication::clipboard()->ownsClipboard()) return;
    ++changes_;
    Event event;
    event.kind = Event::Kind::clipboardChanged;
    event.time = windows_.now();
    windows_.post(event);
}

void QtClipboard::set(std::vector<Item> items) {
    connect();
    ++changes_;
    setting_ = true;
    if (items.empty()) {
        QGuiApplication::clipboard()->clear();
    } else {
        auto* data = new QMimeData; // The clipboard takes it.
        for (const Item& item : items) {
            data->setData(toQt(item.type), QByteArray(reinterpret_cast<const char*>(item.bytes.data()),
                                                      static_cast<qsizetype>(item.bytes.size())));
        }
        QGuiApplication::clipboard()->setMimeData(data);
    }
    setting_ = false;
}

std::vector<std::string> QtClipboard::types() {
    connect();
    std::vector<std::string> names;
    if (const QMimeData* data = QGuiApplication::clipboard()->mimeData()) {
        for (const QString& name : data->formats()) {
            names.push_back(name.toStdString());
        }
    }
    return names;
}

std::vector<std::uint8_t> QtClipboard::read(std::string_view type) {
    connect();
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    if (!data || !data->hasFormat(toQt(type))) return {};
    const QByteArray bytes = data->data(toQt(type));
    return {bytes.begin(), bytes.end()};
}

std::uint64_t QtClipboard::changeCount() {
    connect();
    return changes_;
}

} // namespace libvue::backend
