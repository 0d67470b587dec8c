// roamwise-cli-app: roamwise-cli with the application core linked in. It
// runs every command; roamwise-cli starts it for those that need Qt.
#include <iostream>

#include "cli/app_core_commands.h"

int main(int argc, char** argv) {
    return roamwise::cli::run(std::vector<std::string>(argv + 1, argv + argc), std::cout,
                              std::cerr);
}
