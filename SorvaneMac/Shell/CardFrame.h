#pragma once

#include <QFrame>
#include <QString>

class QVBoxLayout;

namespace sorvane {

/// A white card with its title and subtitle, to be filled from top to bottom.
class CardFrame : public QFrame {
public:
    explicit CardFrame(const QString& title = {}, const QString& subtitle = {});

    QVBoxLayout& body() { return *body_; }

private:
    QVBoxLayout* body_;
};

}  // namespace sorvane
