#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

// A directory of its own for each test, gone at its end. Programs that test the same at the same time do not meet.
class TestDirectory {
public:
    TestDirectory() {
        static int s_number = 0;
        const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
        std::string name = std::string(test->test_suite_name()) + "-" + test->name() + "-" + std::to_string(++s_number);
        for (char& character : name) {
            character = character == '/' ? '-' : character;
        }
        // Their addresses and times differ.
        name += "-" + std::to_string(reinterpret_cast<std::uintptr_t>(this) ^ std::hash<std::string>()(TimeText()));
        m_path = std::filesystem::temp_directory_path() / ("quorvex-" + name);
        std::filesystem::create_directories(m_path);
    }
    ~TestDirectory() {
        std::error_code error;
        std::filesystem::remove_all(m_path, error);
    }
    TestDirectory(const TestDirectory&) = delete;
    TestDirectory& operator=(const TestDirectory&) = delete;

    const std::filesystem::path& Path() const { return m_path; }
    std::string Name(const std::string& file) const { return (m_path / file).string(); }
    std::size_t Entries() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(m_path), std::filesystem::directory_iterator()));
    }

private:
    static std::string TimeText() {
        return std::to_string(std::filesystem::file_time_type::clock::now().time_since_epoch().count());
    }

    std::filesystem::path m_path;
};
