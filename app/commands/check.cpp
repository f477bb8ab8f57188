#include "commands/command.h"
#include "console/json_text.h"
#include "exit_status.h"
#include "inspect/check_file.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>

namespace verdanth {
namespace {

using Json = nlohmann::ordered_json;

struct CheckOptions {
    std::vector<std::string> files;
    std::string format = "table";
};

const char* verdict(int status)
{
    switch (status) {
    case kSuccess: return "clean";
    case kFindings: return "warnings";
    default: return "unusable";
    }
}

Json describe(const CheckReport& report)
{
    Json findings = Json::array();
    for (const Finding& finding : report.findings)
        findings.push_back({{"severity", finding.unusable ? "error" : "warning"},
                            {"kind", finding.kind},
                            {"file", finding.file},
                            {"text", finding.text}});
    return {{"file", report.file}, {"status", verdict(report.status())}, {"findings", std::move(findings)}};
}

// One line a finding, and one a file, in the order of the request.
void print(const CheckReport& report, std::ostream& out)
{
    out << OneLine(report.file) << ": " << verdict(report.status());
    if (!report.findings.empty())
        out << ", " << report.findings.size() << (report.findings.size() == 1 ? " finding" : " findings");
    out << '\n';

    size_t widest = 0;
    for (const Finding& finding : report.findings) widest = std::max(widest, finding.kind.size());
    for (const Finding& finding : report.findings) {
        out << (finding.unusable ? "  error    " : "  warning  ") << finding.kind
            << std::string(widest - finding.kind.size() + 2, ' ');
        if (finding.file != report.file) out << OneLine(finding.file) << ": ";
        out << OneLine(finding.text) << '\n';
    }
}

int runCheck(const CheckOptions& options, Console& console)
{
    int status = kSuccess;
    Json all = Json::array();
    for (const std::string& file : options.files) {
        console.setSubject(file);
        const CheckReport report = CheckModelFile(file, console);
        if (console.isCancelled()) return kFailure;
        status = std::max(status, report.status());
        if (options.format == "json")
            all.push_back(describe(report));
        else
            print(report, console.out());
    }
    if (options.format == "json") console.out() << JsonText(all, kForPeople) << '\n';
    return status;
}

} // namespace

void AddCheckCommand(CLI::App& program, CommandWork& chosen)
{
    CLI::App* command = program.add_subcommand("check", "Tell what is wrong with model files, and what reading loses");
    const auto options = std::make_shared<CheckOptions>();
    command->add_option("files", options->files, "Model files")->required()->type_name("FILE...");
    AddFormatOption(*command, options->format);
    command->footer(ExampleText("verdanth check plants/*/*.vdt.gz", "checks a whole plant library") +
                    "\nExit status: 0 clean, 1 warnings, 2 if a file is unusable.");
    command->callback(
        [options, &chosen] { chosen = [options](Console& console) { return runCheck(*options, console); }; });
}

} // namespace verdanth
