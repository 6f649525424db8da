#include "entrylist/StatusImages.h"

#include <QColor>
#include <QGuiApplication>
#include <QHash>
#include <QPainter>

namespace saldo::gui {
namespace {

QPixmap drawnCircle(const QColor& colour)
{
    const qreal ratio = qGuiApp ? qGuiApp->devicePixelRatio() : 1.0;
    QPixmap pixmap(QSize(StatusImages::kSize, StatusImages::kSize) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour.darker(140), 1.0));
    painter.setBrush(colour);
    painter.drawEllipse(QRectF(1.0, 1.0, StatusImages::kSize - 2.0, StatusImages::kSize - 2.0));
    return pixmap;
}

} // namespace

QPixmap StatusImages::pixmap(const char* imageName)
{
    static QHash<QByteArray, QPixmap> cache;
    const QByteArray key(imageName);
    auto it = cache.constFind(key);
    if (it != cache.constEnd())
        return *it;

    QPixmap pixmap(QStringLiteral(":/images/%1.png").arg(QString::fromLatin1(key)));
    if (!pixmap.isNull()) {
        pixmap = pixmap.scaled(kSize, kSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    } else {
        const bool green = key == "greenCircle";
        pixmap = drawnCircle(green ? QColor(0x2e, 0xb8, 0x3c) : QColor(0xe0, 0x30, 0x2a));
    }
    cache.insert(key, pixmap);
    return pixmap;
}

} // namespace saldo::gui
