#include "simulated_machine/jobs.h"

#include <iostream>

#include "simulated_machine/punch.h"
#include "simulated_machine/reader.h"
#include "simulated_machine/report.h"

namespace kelvane::simulated {

namespace {

Outcome complain(const std::string& file, const char* what) {
    std::cerr << file << ": " << what << "\n";
    return Outcome::trouble;
}

void linger(const Options& options, Line& line) {
    const Time end = Clock::now() + options.linger;
    while (line.partner_present() && Clock::now() < end) {
        if (line.wait(end)) {
            return;
        }
        while (line.take()) {
        }
    }
}

}  // namespace

bool deliver_report(const Options& options, const std::string& text) {
    if (options.report.empty()) {
        std::cerr << text << "\n";
        return true;
    }
    return append_file(options.report, text + "\n");
}

Outcome read_job(const Options& options, Line& line, Contact& contact, const Job& job) {
    Reader reader(options, line, contact, true);
    Report report;
    report.add("file", job.file);
    const Outcome outcome = reader.run(report);
    const bool anything = !reader.raw().empty();
    if (anything && !write_file(job.file, reader.content())) {
        return complain(job.file, "cannot be written");
    }
    if (anything && !job.raw.empty() && !write_file(job.raw, reader.raw())) {
        return complain(job.raw, "cannot be written");
    }
    return deliver_report(options, report.text()) ? outcome
                                                  : complain(options.report, "cannot be written");
}

Outcome punch_job(const Options& options, Line& line, Contact& contact, const Job& job) {
    std::string program;
    if (!read_file(job.file, program)) {
        return complain(job.file, "cannot be read");
    }
    Report report;
    report.add("file", job.file);
    const Outcome outcome = Punch(options, line, contact, program).run(report);
    return deliver_report(options, report.text()) ? outcome
                                                  : complain(options.report, "cannot be written");
}

Outcome run_jobs(const Options& options, Line& line) {
    Contact contact(options, line);
    bool first = true;
    do {
        for (const Job& job : options.jobs) {
            if (!first && !options.keep_session) {
                contact.await_new_session();
            }
            first = false;
            const Outcome outcome = job.reads ? read_job(options, line, contact, job)
                                              : punch_job(options, line, contact, job);
            if (outcome != Outcome::done) {
                return outcome == Outcome::stopped && options.loop ? Outcome::done : outcome;
            }
        }
    } while (options.loop);
    linger(options, line);
    return Outcome::done;
}

}  // namespace kelvane::simulated
