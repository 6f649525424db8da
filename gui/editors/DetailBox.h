#pragma once

#include <QColor>
#include <QFrame>

class QGraphicsOpacityEffect;

namespace saldo::gui {

// The coloured frame round the detail form: paints its fill colour and a
// border in the border colour, and fades itself and the form inside with an
// opacity (0 hidden .. 1 shown). The three are properties so that they can be
// animated.
class DetailBox : public QFrame {
    Q_OBJECT
    Q_PROPERTY(QColor fillColor READ fillColor WRITE setFillColor)
    Q_PROPERTY(QColor borderColor READ borderColor WRITE setBorderColor)
    Q_PROPERTY(qreal opacity READ opacity WRITE setOpacity)
public:
    explicit DetailBox(QWidget* parent = nullptr);

    QColor fillColor() const { return fill_; }
    void setFillColor(const QColor& color);
    QColor borderColor() const { return border_; }
    void setBorderColor(const QColor& color);
    qreal opacity() const { return opacity_; }
    void setOpacity(qreal opacity);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor fill_ = QColor::fromRgbF(0.0f, 1.0f, 0.0f);
    QColor border_ = Qt::black;
    qreal opacity_ = 0.0;
    QGraphicsOpacityEffect* effect_ = nullptr;
};

}  // namespace saldo::gui
