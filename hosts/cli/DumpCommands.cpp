#include "hosts/cli/DumpCommands.h"

#include <map>

#include "hosts/cli/CommandFields.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk::host {

namespace {

constexpr std::chrono::milliseconds pauseBetweenReports{250};

Json describe(const DumpProgress& progress) {
    return {{"bytes", progress.bytesDone},
            {"total", progress.bytesTotal},
            {"files", progress.filesDone},
            {"path", progress.path}};
}

const char* nameOf(DumpResult::End end) {
    switch (end) {
        case DumpResult::End::done:
            return "done";
        case DumpResult::End::cancelled:
            return "cancelled";
        case DumpResult::End::failed:
            break;
    }
    return "failed";
}

Json describe(const DumpResult& result) {
    Json fields = {{"end", nameOf(result.end)},
                   {"files", result.files},
                   {"folders", result.folders},
                   {"skipped", result.skipped}};
    if (!result.message.empty()) fields["message"] = result.message;
    return fields;
}

}  // namespace

bool DumpCommands::take(const std::string& name, const Json& command) {
    using Handler = void (DumpCommands::*)(const Json&);
    static const std::map<std::string, Handler> handlers = {
        {"pack", &DumpCommands::pack},
        {"unpack", &DumpCommands::unpack},
        {"cancel", &DumpCommands::cancel},
    };
    const auto found = handlers.find(name);
    if (found == handlers.end()) return false;
    (this->*found->second)(command);
    return true;
}

void DumpCommands::pack(const Json& command) {
    auto sources = stringsForKey(command, "sources");
    auto target = stringForKey(command, "target");
    if (!sources || sources->empty() || !target) {
        return reports_->refuse("\"sources\" is no list of paths, or \"target\" no path");
    }
    if (isBusy()) return;
    start([sources = *std::move(sources), target = *std::move(target)](
              const DumpOptions& options) { return packDump(sources, target, options); },
          "packing", "packed");
}

void DumpCommands::unpack(const Json& command) {
    auto archive = stringForKey(command, "archive");
    auto target = stringForKey(command, "target");
    if (!archive || !target) return reports_->refuse("\"archive\" or \"target\" is no path");
    if (isBusy()) return;
    start([archive = *std::move(archive), target = *std::move(target)](
              const DumpOptions& options) { return unpackDump(archive, target, options); },
          "unpacking", "unpacked");
}

void DumpCommands::cancel(const Json&) {
    if (!job_) return reports_->refuse("nothing is being packed or unpacked");
    job_->cancel();
}

bool DumpCommands::isBusy() {
    if (job_) reports_->refuse("something is being packed or unpacked");
    return job_ != nullptr;
}

void DumpCommands::start(DumpJob::Work work, const char* progress, const char* end) {
    paced_.emplace(
        queue_, [this, progress] { reports_->write(progress, describe(latest_)); },
        pauseBetweenReports);
    const auto advance = [this](const DumpProgress& latest) {
        latest_ = latest;
        paced_->ask();
    };
    const auto finish = [this, end](const DumpResult& result) {
        paced_->finish();
        job_.reset();
        reports_->write(end, describe(result));
    };
    try {
        job_ =
            std::make_unique<DumpJob>(queue_, std::move(work), DumpJob::Handlers{advance, finish});
    } catch (const std::system_error& error) {
        reports_->refuse(error.what());
    }
}

}  // namespace supportsdk::host
