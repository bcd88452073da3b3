#include "SorvaneMac/Shell/CheckListModel.h"

#include <QLineEdit>
#include <QListView>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include "SorvaneMac/Shell/FormView.h"
#include "SorvaneMac/Shell/QtText.h"
#include "Tests/Shell/OffscreenApplication.h"

namespace sorvane {
namespace {

CheckListControl listOf(int count) {
    CheckListControl list;
    list.label = "Items";
    for (int at = 0; at < count; ++at) {
        list.items.push_back(
            {.name = (at % 2 ? "calm" : "tense") + std::to_string(at), .detail = ""});
    }
    return list;
}

TEST(CheckListModel, SaysOfAnItemWhatTheFormSays) {
    CheckListModel model;
    CheckListControl list = listOf(0);
    list.secondLabel = "Rev";
    list.items = {{.name = "größe", .detail = "", .isChecked = true},
                  {.name = "q2", .detail = "Felt calm", .isFlagged = true, .second = true},
                  {.name = "q3", .detail = "", .second = false}};
    model.show(list);
    const struct {
        int row;
        int role;
        QVariant value;
    } cases[] = {
        {0, Qt::DisplayRole, "größe"},
        {0, Qt::CheckStateRole, Qt::Checked},
        {1, Qt::CheckStateRole, Qt::Unchecked},
        {0, CheckListModel::flaggedRole, false},
        {1, CheckListModel::flaggedRole, true},
        {0, CheckListModel::secondRole, QVariant()},
        {1, CheckListModel::secondRole, true},
        {2, CheckListModel::secondRole, false},
        {0, CheckListModel::searchRole, "größe"},
        {1, CheckListModel::searchRole, "q2\nFelt calm"},
        {1, Qt::ToolTipRole, "q2\nFelt calm"},
        {1, CheckListModel::detailRole, "Felt calm"},
        {1, Qt::AccessibleTextRole, "q2, Rev"},
        {2, Qt::AccessibleTextRole, "q3"},
        {0, Qt::FontRole, QVariant()},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(model.index(each.row).data(each.role), each.value)
            << each.row << " " << each.role;
    }
    EXPECT_EQ(model.rowCount(), 3);
    EXPECT_EQ(model.rowCount(model.index(0)), 0);
    EXPECT_TRUE(model.index(0).flags() & Qt::ItemIsUserCheckable);
}

TEST(CheckListModel, TellsWhoIsCheckedAndTurned) {
    CheckListModel model;
    CheckListControl list = listOf(3);
    list.items[2].second = true;
    std::vector<std::string> told;
    list.setChecked = [&told](const std::string& name, bool isOn) {
        told.push_back(name + (isOn ? " on" : " off"));
    };
    list.setSecond = [&told](const std::string& name, bool isOn) {
        told.push_back(name + (isOn ? " turned" : " straight"));
    };
    model.show(list);
    EXPECT_TRUE(model.setData(model.index(1), Qt::Checked, Qt::CheckStateRole));
    EXPECT_TRUE(model.setData(model.index(0), Qt::Unchecked, Qt::CheckStateRole));
    EXPECT_FALSE(model.setData(model.index(0), "other", Qt::EditRole));
    model.turnSecond(model.index(0));
    model.turnSecond(model.index(2));
    EXPECT_EQ(told, (std::vector<std::string>{"calm1 on", "tense0 off", "tense2 straight"}));

    model.show(listOf(3));
    EXPECT_FALSE(model.setData(model.index(1), Qt::Checked, Qt::CheckStateRole))
        << "a list that nobody listens to is not changed";
}

TEST(CheckListModel, KeepsThePlaceWhileOnlyTheChecksChange) {
    CheckListModel model;
    model.show(listOf(3));
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    CheckListControl checked = listOf(3);
    checked.items[1].isChecked = true;
    model.show(checked);
    EXPECT_EQ(resets.size(), 0);
    ASSERT_EQ(changes.size(), 1);
    EXPECT_EQ(changes.front().at(1).toModelIndex(), model.index(2));
    model.show(listOf(4));
    model.show(listOf(0));
    model.show(listOf(0));
    EXPECT_EQ(resets.size(), 2);
    EXPECT_EQ(changes.size(), 1);
}

TEST(CheckListView, AFilterThatIsGoneHidesNothing) {
    offscreenApplication();
    FormView view;
    const auto shown = [&view](int count) {
        SetupForm form;
        form.controls = {listOf(count)};
        view.show(form);
        return view.findChild<QListView*>()->model()->rowCount();
    };
    EXPECT_EQ(shown(10), 10);
    auto* filter = view.findChild<QLineEdit*>();
    filter->setText("calm");
    EXPECT_EQ(shown(10), 5);
    EXPECT_EQ(shown(4), 4) << "a short list has no filter to clear";
    EXPECT_EQ(shown(10), 10);
}

}  // namespace
}  // namespace sorvane
