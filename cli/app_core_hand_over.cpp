// How roamwise-cli runs the commands that need the application core: it
// replaces itself with roamwise-cli-app, which links Qt and libcurl. The
// pure commands then never load those libraries (a third of the start-up
// memory of a `calendar` run).
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>

#include "cli/commands.h"

namespace roamwise::cli {

namespace {

constexpr const char* kAppCoreName = "roamwise-cli-app";

// Beside this program (the build tree), or in the libexec folder of an
// installed tree.
std::filesystem::path appCorePath() {
    std::error_code error;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) return kAppCoreName;
    const std::filesystem::path beside = self.parent_path() / kAppCoreName;
    if (std::filesystem::exists(beside, error)) return beside;
    return self.parent_path() / ".." / ROAMWISE_LIBEXEC_DIR / kAppCoreName;
}

[[noreturn]] void handOver(Io& io) {
    io.out.flush();
    io.err.flush();
    std::cout.flush();
    std::cerr.flush();
    const std::filesystem::path path = appCorePath();
    std::vector<std::string> words{"roamwise-cli"};
    words.insert(words.end(), io.args.begin(), io.args.end());
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);
    ::execv(path.c_str(), argv.data());
    throw std::runtime_error("cannot start the application core " + path.string() + ": " +
                             std::strerror(errno));
}

CommandAdder handedOver(std::string name, std::string description) {
    return [name, description](CLI::App& root, Io& io) {
        CLI::App* command = root.add_subcommand(name, description);
        // Every word after the name, --help too, goes to the application core.
        command->set_help_flag();
        command->prefix_command();
        command->allow_extras();
        command->callback([&io] { handOver(io); });
    };
}

}  // namespace

AppCoreCommands handOverToAppCore() {
    return {
        handedOver("watch", appCoreHelp::watch),
        handedOver("refresh", appCoreHelp::refresh),
        handedOver("status", appCoreHelp::status),
        handedOver("widget", appCoreHelp::widget),
        [](const tripkit::WearAsk&, Io& io) -> LiveWear { handOver(io); },
    };
}

}  // namespace roamwise::cli
