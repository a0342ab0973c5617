#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/runtime/ProcessWide.h"

namespace velmora {
namespace {

struct Mortal {
    std::shared_ptr<std::vector<std::string>> deaths;
    std::string name;
    Mortal() = default;
    Mortal(std::shared_ptr<std::vector<std::string>> list, std::string n)
        : deaths(std::move(list)), name(std::move(n)) {}
    ~Mortal() {
        if (deaths) deaths->push_back(name);
    }
    Mortal(const Mortal&) = delete;
    Mortal& operator=(const Mortal&) = delete;
};

ProcessWide<int> number(3);
ProcessWide<std::unique_ptr<Mortal>> mortal;

TEST(ProcessImageTest, ANewImageHoldsTheInitialValuesAndKeepsItsOwnAfterwards) {
    number = 5;
    ProcessImage image;
    {
        const ProcessImage::Scope scope(image);
        EXPECT_EQ(*number, 3);
        number = 8;
    }
    EXPECT_EQ(*number, 5);
    image.exchange();
    EXPECT_EQ(*number, 8);
    image.exchange();
    EXPECT_EQ(*number, 5);
    number = 3;
}

TEST(ProcessImageTest, ImagesCanBeCurrentInsideOneAnother) {
    ProcessImage a;
    ProcessImage b;
    const ProcessImage::Scope outer(a);
    number = 10;
    {
        const ProcessImage::Scope inner(b);
        EXPECT_EQ(*number, 3);
        number = 20;
    }
    EXPECT_EQ(*number, 10);
}

TEST(ProcessImageTest, WhatAnImageHoldsDiesWithItAndNothingElseDoes) {
    const auto deaths = std::make_shared<std::vector<std::string>>();
    *mortal = std::make_unique<Mortal>(deaths, "outside");
    {
        ProcessImage image;
        const ProcessImage::Scope scope(image);
        *mortal = std::make_unique<Mortal>(deaths, "inside");
    }
    EXPECT_EQ(*deaths, std::vector<std::string>{"inside"});
    ASSERT_NE(*mortal, nullptr);
    EXPECT_EQ((*mortal)->name, "outside");
    *mortal = nullptr;
}

}  // namespace
}  // namespace velmora
