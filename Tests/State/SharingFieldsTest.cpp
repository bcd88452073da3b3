#include "SorvaneMac/State/SharingFields.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

namespace sorvane {
namespace {

TEST(SharingFields, KeepTheirValuesForTheNextSession) {
    SessionDefaults defaults;
    defaults.set("sv.intelligence.model", 7);
    {
        FieldRegistry registry;
        SharingFields fields(registry);
        const Subscription kept = fields.keepIn(registry, defaults);
        EXPECT_FALSE(fields.intelligenceIsOn.get()) << "off until it is allowed";
        EXPECT_EQ(fields.intelligenceModel.get(), "") << "what was kept is no text";
        fields.intelligenceIsOn.set(true);
        fields.intelligenceAddress.set("127.0.0.1:80");
        registry.resetWithDataset();
    }
    FieldRegistry registry;
    SharingFields next(registry);
    const Subscription kept = next.keepIn(registry, defaults);
    EXPECT_TRUE(next.intelligenceIsOn.get());
    EXPECT_EQ(next.intelligenceAddress.get(), "127.0.0.1:80");
}

}  // namespace
}  // namespace sorvane
