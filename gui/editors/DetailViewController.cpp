#include "editors/DetailViewController.h"

namespace saldo::gui {

class DetailViewController::Private {
public:
    qreal opacity = 0.0;
};

DetailViewController::DetailViewController(UserDefaults& defaults, QWidget* parent)
    : QWidget(parent)
    , defaults_(defaults)
    , d_(new Private)
{
}

DetailViewController::~DetailViewController()
{
    delete d_;
}

void DetailViewController::updateDetailView()
{
    if (!selectedEinnahme_) {
        setBoxOpacity(0.0);
        return;
    }
    setBoxOpacity(1.0);
}

qreal DetailViewController::boxOpacity() const
{
    return d_->opacity;
}

void DetailViewController::setBoxOpacity(qreal opacity)
{
    d_->opacity = opacity;
}

}  // namespace saldo::gui
