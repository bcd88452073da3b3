#include <QApplication>

#include <gtest/gtest.h>

#include "SorvaneMac/Shell/Theme.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    sorvane::Theme::apply(application, sorvane::Appearance::light);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
