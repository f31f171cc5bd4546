#include "BrimquillCore/Foundation/Log.h"
#include "Platform/Desktop/JsonUserDefaults.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace brimquill::platform {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
namespace fs = std::filesystem;

class JsonUserDefaultsTest : public testing::Test {
protected:
    JsonUserDefaultsTest() {
        previousSink_ = log::setSink([this](std::string_view line) { lines_.emplace_back(line); });
    }
    ~JsonUserDefaultsTest() override { log::setSink(previousSink_); }
    void put(const std::string& text) const {
        fs::create_directories(directory_);
        std::ofstream(directory_ / "suite.json", std::ios::binary) << text;
    }
    std::string read(const std::string& name) const {
        std::ifstream in(directory_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    QTemporaryDir above_;
    fs::path directory_ = fs::path(above_.path().toStdString()) / "config" / "brimquill";
    std::vector<std::string> lines_;

private:
    log::Sink previousSink_;
};

TEST_F(JsonUserDefaultsTest, TypesLastAndNobodyElseReadsThem) {
    {
        JsonUserDefaults defaults(directory_, "suite");
        EXPECT_FALSE(fs::exists(directory_)) << "nothing is made before the first change";
        defaults.set("boolean", true);
        defaults.set("integer", std::int64_t{1});
        defaults.set("strings", std::vector<std::string>{"a", "\xff"});
        JsonUserDefaults other(directory_, "suite");
        other.set("other", std::string("kept"));
        defaults.set("double", 1.0);
    }
    const JsonUserDefaults defaults(directory_, "suite");
    EXPECT_EQ(defaults.boolean("boolean"), true);
    EXPECT_EQ(defaults.integer("boolean"), std::nullopt);
    EXPECT_EQ(defaults.integer("integer"), 1);
    EXPECT_EQ(defaults.integer("double"), std::nullopt);
    EXPECT_EQ(defaults.string("other"), "kept");
    EXPECT_EQ(fs::status(directory_ / "suite.json").permissions(), fs::perms(0600));
    EXPECT_EQ(fs::status(directory_).permissions(), fs::perms(0700));
    EXPECT_EQ(fs::status(directory_.parent_path()).permissions(), fs::perms(0700));
    EXPECT_THAT(lines_, IsEmpty());
}

TEST_F(JsonUserDefaultsTest, WhatCannotBeReadIsSetAsideAndKept) {
    int number = 0;
    for (const char* damaged : {"{\"boolean\": tr", "", "[1, 2]", "\xff\xfe\x00", "{\"a\": 1} trailing"}) {
        SCOPED_TRACE(damaged);
        lines_.clear();
        put(damaged);
        JsonUserDefaults defaults(directory_, "suite");
        const std::string aside = "suite.damaged-" + std::to_string(++number) + ".json";
        EXPECT_EQ(read(aside), damaged);
        EXPECT_THAT(lines_, ElementsAre(HasSubstr(aside)));
        EXPECT_EQ(defaults.boolean("boolean"), std::nullopt);
        defaults.set("boolean", true);
        EXPECT_EQ(JsonUserDefaults(directory_, "suite").boolean("boolean"), true);
    }
}

TEST_F(JsonUserDefaultsTest, AFileDamagedWhileTheProgramRunsLosesNothingInMemory) {
    JsonUserDefaults defaults(directory_, "suite");
    defaults.set("before", std::string("kept"));
    put("no JSON");
    defaults.set("after", std::string("written"));
    EXPECT_EQ(defaults.string("before"), "kept");
    EXPECT_EQ(read("suite.damaged-1.json"), "no JSON");
    const JsonUserDefaults fresh(directory_, "suite");
    EXPECT_EQ(fresh.string("before"), "kept");
    EXPECT_EQ(fresh.string("after"), "written");
}

TEST_F(JsonUserDefaultsTest, WithoutADirectoryToWriteValuesLastAsLongAsTheProgram) {
    std::ofstream(directory_.parent_path()) << "a file where the directory should be";
    JsonUserDefaults defaults(directory_, "suite");
    defaults.set("first", std::int64_t{1});
    defaults.set("second", std::int64_t{2});
    EXPECT_EQ(defaults.integer("first"), 1);
    EXPECT_EQ(defaults.integer("second"), 2);
    EXPECT_THAT(lines_, ElementsAre(HasSubstr((directory_ / "suite.json").string())));
    fs::remove(directory_.parent_path());
    defaults.set("third", std::int64_t{3});
    EXPECT_EQ(JsonUserDefaults(directory_, "suite").integer("first"), 1) << "once it can be written, all is";
}

}  // namespace
}  // namespace brimquill::platform
