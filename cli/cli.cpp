#include "cli/cli.h"

#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/table.h"
#include "tripkit/json.h"

namespace roamwise::cli {

namespace {

int parseAndRun(const std::vector<std::string>& args, std::ostream& out, std::ostream& err,
                const std::vector<CommandAdder>& commands) {
    CLI::App app{"Roamwise: cheap round trips from your home airports, from a terminal.",
                 "roamwise-cli"};
    app.require_subcommand(1);
    app.fallthrough(false);
    app.set_version_flag("--version", "roamwise-cli " ROAMWISE_VERSION);
    Io io{out, err, args};
    for (const CommandAdder& add : commands) add(app, io);

    // CLI11 wants argv order reversed in a vector.
    std::vector<std::string> reversed(args.rbegin(), args.rend());
    try {
        checkCommandNames(app, args);
        app.parse(reversed);
    } catch (const CLI::ParseError& e) {
        // --help arrives as a "successful" parse error; the help shown is
        // that of the command it was given to.
        if (e.get_exit_code() == 0) {
            app.exit(e, out, err);
            return kOk;
        }
        err << "roamwise-cli: " << shown(e.what()) << "\n";
        err << "Run 'roamwise-cli --help' or 'roamwise-cli COMMAND --help' for usage.\n";
        return kUsage;
    } catch (const UsageError& e) {
        err << "roamwise-cli: " << shown(e.what()) << "\n";
        err << "Run 'roamwise-cli --help' or 'roamwise-cli COMMAND --help' for usage.\n";
        return kUsage;
    } catch (const tripkit::json::DecodeError& e) {
        err << "roamwise-cli: " << shown(e.what()) << "\n";
        return kNoData;
    } catch (const std::exception& e) {
        err << "roamwise-cli: " << shown(e.what()) << "\n";
        return kNoData;
    }
    return io.status;
}

}  // namespace

int run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err,
        const std::vector<CommandAdder>& commands) {
    const int status = parseAndRun(args, out, err, commands);
    // A full disk or a closed pipe must not pass for success.
    if (!out.flush()) {
        err << "roamwise-cli: could not write the output\n";
        return status == kOk ? kNoData : status;
    }
    return status;
}

}  // namespace roamwise::cli
