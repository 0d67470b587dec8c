#include <iostream>

#include "cli/cli.h"

int main(int argc, char** argv) {
    return roamwise::cli::run(std::vector<std::string>(argv + 1, argv + argc), std::cout, std::cerr);
}
