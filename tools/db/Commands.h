// What the program can do, each as a word of the command line.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kavidex::db {

// What a shell gets.
constexpr int done = 0, found = 1, failed = 2;

using Words = std::vector<std::string>;

struct Command {
    std::string_view name, arguments, help;
    std::size_t least, most; // arguments
    int (*run)(const Words&);
};

std::span<const Command> Commands();

} // namespace kavidex::db
