#include "platform/foundation/AddedEnvironment.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace velmora {
namespace {

using List = AddedEnvironment::List;
using Place = AddedEnvironment::Place;

constexpr const char* folders = "VELMORA_TEST_FOLDERS";
constexpr const char* names = "VELMORA_TEST_NAMES";

class AddedEnvironmentTest : public ::testing::Test {
protected:
    void SetUp() override { clear(); }
    void TearDown() override { clear(); }

    static void clear() {
        for (const char* name : {folders, names, "VELMORA_ADDED"}) ::unsetenv(name);
    }

    static std::string value(const char* name) {
        const char* text = std::getenv(name);
        return text ? text : "(none)";
    }

    static void remove() {
        for (const auto& [variable, text] : AddedEnvironment::removal()) {
            if (text) {
                ::setenv(variable.c_str(), text->c_str(), 1);
            } else {
                ::unsetenv(variable.c_str());
            }
        }
        EXPECT_EQ(value("VELMORA_ADDED"), "(none)");
    }
};

TEST_F(AddedEnvironmentTest, WhatWasAddedIsTakenOutAndWhatTheSessionHasStays) {
    struct {
        const char* before;
        const char* with;
    } const rows[] = {
        {nullptr, "/ours"},
        {"/opt/plugins", "/ours:/opt/plugins"},
        {"/ours:/opt/plugins", "/ours:/opt/plugins"},
        {"/opt/plugins:/ours", "/opt/plugins:/ours"},
    };
    for (const auto& row : rows) {
        clear();
        if (row.before) ::setenv(folders, row.before, 1);
        // Once by a wrapper too, say.
        for (int times = 0; times < 2; ++times) {
            AddedEnvironment::add(folders, "/ours", List::Folders, Place::Front);
            EXPECT_EQ(value(folders), row.with);
        }
        remove();
        EXPECT_EQ(value(folders), row.before ? row.before : "(none)");
    }
}

TEST_F(AddedEnvironmentTest, WhatAScriptHasPutThereMeanwhileStays) {
    ::setenv(names, "other", 1);
    AddedEnvironment::add(names, "velmora", List::Names, Place::End);
    AddedEnvironment::add(folders, "/six", List::Folders, Place::Front);
    AddedEnvironment::add(folders, "/a=b,c", List::Folders, Place::Front);
    EXPECT_EQ(value(names), "other,velmora");
    ::setenv(folders, ("/script:" + value(folders)).c_str(), 1);
    EXPECT_EQ(value(folders), "/script:/a=b,c:/six");
    remove();
    EXPECT_EQ(value(names), "other");
    EXPECT_EQ(value(folders), "/script");
}

TEST_F(AddedEnvironmentTest, ANoteThatSaysNothingChangesNothing) {
    ::setenv(folders, "/opt", 1);
    for (const char* note :
         {"", "\n=\n:=", "VELMORA_TEST_FOLDERS:", "VELMORA_TEST_FOLDERS:=/else"}) {
        ::setenv("VELMORA_ADDED", note, 1);
        remove();
        EXPECT_EQ(value(folders), "/opt") << note;
    }
}

}  // namespace
}  // namespace velmora
