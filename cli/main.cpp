#include <iostream>

#include "cli/cli.h"
#include "cli/commands.h"

int main(int argc, char** argv) {
    using namespace roamwise::cli;
    return run(std::vector<std::string>(argv + 1, argv + argc), std::cout, std::cerr,
               allCommands(handOverToAppCore()));
}
