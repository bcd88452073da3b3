#pragma once

#include <functional>

#include <QFrame>
#include <QTimer>

#include "SorvaneMac/Screens/TableSearch.h"

class QCheckBox;
class QLabel;
class QLineEdit;

namespace sorvane {

/// The bar in which a text is searched for: what is looked for, how many there are, the way on.
class DataGridFindBar final : public QFrame {
public:
    enum class Direction { forward, backward };
    struct Actions {
        /// What is looked for has changed.
        std::function<void()> search;
        std::function<void(Direction)> move;
        std::function<void()> close;
    };

    explicit DataGridFindBar(Actions actions);

    TableQuery query() const;
    /// Says how the search stands.
    void say(const std::string& summary);
    /// Opens the bar with its text selected.
    void open();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    Actions actions_;
    QLineEdit* words_;
    QCheckBox* wholeCells_;
    QLabel* summary_;
    /// Waits for a pause in the typing.
    QTimer pause_;
};

}  // namespace sorvane
