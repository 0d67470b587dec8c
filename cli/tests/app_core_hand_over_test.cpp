// roamwise-cli runs the application core's commands through roamwise-cli-app,
// and loads no Qt for the others.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "cli/tests/cli_test_support.h"

namespace roamwise::cli {
namespace {

using testing::TempDir;

struct Process {
    int status = -1;
    std::string output;  // stdout and stderr
};

Process runProcess(const std::string& command) {
    Process p;
    FILE* pipe = ::popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) return p;
    char buffer[4096];
    std::size_t n = 0;
    while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) p.output.append(buffer, n);
    const int raw = ::pclose(pipe);
    p.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    return p;
}

TEST(AppCoreHandOver, CommandsReachTheAppCoreWithTheirArgumentsAndStatus) {
    const std::string cli = ROAMWISE_CLI;
    // The help of a handed-over command comes from the app core, options and all.
    Process help = runProcess(cli + " status --help");
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.output, HasSubstr("Usage: roamwise-cli status"));
    EXPECT_THAT(help.output, HasSubstr("--home"));

    // Its exit status and messages come back unchanged.
    const TempDir dir;
    Process widget = runProcess("XDG_DATA_HOME=" + dir.str() + " " + cli + " widget --line");
    EXPECT_EQ(widget.status, 1);
    EXPECT_THAT(widget.output, HasSubstr("No snapshot yet"));

    Process wrong = runProcess(cli + " watch lst");
    EXPECT_EQ(wrong.status, 2);
    EXPECT_THAT(wrong.output, HasSubstr("did you mean 'watch list'?"));

    // The pure commands run without the application core's libraries.
    Process libraries = runProcess("ldd " + cli);
    EXPECT_EQ(libraries.status, 0);
    EXPECT_EQ(libraries.output.find("Qt6"), std::string::npos) << libraries.output;
    EXPECT_EQ(libraries.output.find("libcurl"), std::string::npos) << libraries.output;
}

}  // namespace
}  // namespace roamwise::cli
