#include "editors/DetailBox.h"

#include <QGraphicsOpacityEffect>
#include <QPainter>

#include <algorithm>

namespace saldo::gui {

namespace {
constexpr int kBorderWidth = 2;
constexpr qreal kCornerRadius = 6.0;
}  // namespace

DetailBox::DetailBox(QWidget* parent)
    : QFrame(parent)
    , effect_(new QGraphicsOpacityEffect(this))
{
    effect_->setOpacity(opacity_);
    setGraphicsEffect(effect_);
    setContentsMargins(kBorderWidth + 4, kBorderWidth + 4, kBorderWidth + 4, kBorderWidth + 4);
}

void DetailBox::setFillColor(const QColor& color)
{
    if (fill_ == color)
        return;
    fill_ = color;
    update();
}

void DetailBox::setBorderColor(const QColor& color)
{
    if (border_ == color)
        return;
    border_ = color;
    update();
}

void DetailBox::setOpacity(qreal opacity)
{
    opacity_ = std::clamp(opacity, 0.0, 1.0);
    effect_->setOpacity(opacity_);
    // Fully shown, the box paints straight to the window (crisp text and no
    // off-screen copy); while fading, the effect composes box and form.
    effect_->setEnabled(opacity_ < 1.0);
}

void DetailBox::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal inset = kBorderWidth / 2.0;
    const QRectF frame = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
    painter.setPen(QPen(border_, kBorderWidth));
    painter.setBrush(fill_);
    painter.drawRoundedRect(frame, kCornerRadius, kCornerRadius);
}

}  // namespace saldo::gui
