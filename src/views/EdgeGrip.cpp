#include "views/EdgeGrip.h"

#include <QMouseEvent>

EdgeGrip::EdgeGrip(QWidget* parent, Drag drag) : QWidget(parent), drag_(std::move(drag)) {
    setCursor(Qt::SizeHorCursor);
}

void EdgeGrip::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    begin_ = event->globalPosition().toPoint().x();
    drag_.began();
}

void EdgeGrip::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() & Qt::LeftButton)
        drag_.moved(event->globalPosition().toPoint().x() - begin_);
}
