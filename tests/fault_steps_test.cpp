// Every job of the shop with a disk that fails at any of its operations, or that is looked at
// between any two as after a power cut. One promise: what the operator had, or what the machine has
// sent, is whole somewhere, and every settings file is an old or a new one.

#include <gtest/gtest.h>
#include <set>

#include "support/shop_jobs.h"

namespace kelvane::testing {
namespace {

using Disk = std::map<std::string, std::string>;

std::string on(const Disk& disk, const std::string& path) {
    const auto found = disk.find(path);
    return found == disk.end() ? "(missing)" : found->second;
}
bool somewhere(const Disk& disk, const std::string& content) {
    return std::ranges::any_of(
        disk, [&](const auto& file) { return file.second.find(content) != std::string::npos; });
}
bool is_operators(const std::string& path) {
    return path.starts_with("/nc/");
}
/// What holds work in progress.
bool is_scratch(const std::string& path) {
    return path.find("scratchpad") != std::string::npos || path.ends_with("Binary data") ||
           path.ends_with("IOtest") || path.ends_with("(tempfile)") || path == "Saw" ||
           path.ends_with("programs") || path.ends_with("Unsaved program");
}

/// Counts a run's operations, and keeps what of the disk would survive a power cut: files that were
/// put in their place whole or synced, and what else had happened in their folder by then.
class Disk_watch {
  public:
    explicit Disk_watch(Memory_files& files) : files_(files), safe_(files.all()) {
        files.on_operation = [this](const std::string& operation, const std::string& path) {
            const bool writes =
                operation != "read" && operation != "length" && operation != "stamp";
            settle_last();
            last_ = {operation, path};
            label = operation + " " + path;
            on_step();
            return ++count, fails(count, writes) ? Failure{"Input/output error"} : Result<>();
        };
    }
    [[nodiscard]] const Disk& now() const { return files_.all(); }
    [[nodiscard]] const Disk& safe() const { return safe_; }

    int count = 0;
    std::string label;  ///< of the operation that comes next
    std::function<bool(int number, bool writes)> fails = [](int, bool) { return false; };
    std::function<void()> on_step = [] {};

  private:
    void settle_last() {
        const auto& [operation, path] = last_;
        if (operation == "replace" || operation == "copy" || operation == "rename") {
            std::erase_if(safe_, [&](const auto& file) {
                return folder_of(file.first) == folder_of(path) && !now().contains(file.first);
            });
        } else if (operation != "sync") {
            return;
        }
        safe_[path] = on(now(), path);
    }
    Memory_files& files_;
    Disk safe_;
    std::pair<std::string, std::string> last_;
};

/// A run in which nothing fails, and what it has had on the disk.
struct Clean_run {
    std::map<std::string, std::set<std::string>> versions;
    Disk before, after;
    std::string wire;
    std::set<std::string> boxes;  ///< their texts
    int operations = 0;
};

/// The longest content that the staging file has had in this run.
void note_staged(const Disk& disk, std::string& staged) {
    const std::string now = on(disk, "/kelvane/scratchpad data 5");
    const bool of_this_run = now != "(missing)" && now != job_left;
    staged = of_this_run && now.size() > staged.size() ? now : staged;
}

void expect_whole(const Shop_job& job, const Disk& disk, const Clean_run& clean,
                  const std::string& staged) {
    bool as_after = true;
    for (const auto& [path, versions] : clean.versions) {
        const std::string content = on(disk, path);
        const bool known =
            content == on(clean.before, path) || content == on(clean.after, path) ||
            ((is_operators(path) || path.ends_with("not saved")) && versions.contains(content)) ||
            (path.ends_with("Transfer log") && content.starts_with(on(clean.before, path)));
        EXPECT_TRUE(known || is_scratch(path)) << path << " holds: " << content;
        as_after = as_after && (!is_operators(path) || path.ends_with("KEPT.NC") ||
                                content == on(clean.after, path));
    }
    EXPECT_TRUE(somewhere(disk, "kept text")) << "the last run's changes";
    EXPECT_TRUE(somewhere(disk, job_left) || (job.may_go & Shop_job::left) != 0)
        << "received before";
    for (const auto& [path, content] : clean.before) {
        const bool replaced = (job.may_go & Shop_job::old_program) != 0 && disk.contains(path) &&
                              on(disk, path) != content;
        EXPECT_TRUE(!is_operators(path) || replaced || somewhere(disk, content)) << path;
    }
    EXPECT_TRUE(as_after || somewhere(disk, staged)) << "received: " << staged;
}

Clean_run clean_run(const Shop_job& job) {
    Clean_run clean;
    Shop_floor shop;
    furnish(shop, job.machine);
    Disk_watch watch(shop.desk.files);
    clean.before = watch.now();
    const auto note = [&] {
        for (const auto& [path, content] : watch.now()) {
            clean.versions[path].insert(content);
        }
        for (auto& [path, versions] : clean.versions) {
            versions.insert(on(watch.now(), path));
            versions.insert(on(clean.before, path));
        }
    };
    watch.on_step = note;
    run_job(shop, job);
    note();
    clean.after = watch.now();
    clean.wire = shop.received();
    for (const Message& box : shop.boxes().shown()) {
        clean.boxes.insert(box.text);
    }
    clean.operations = watch.count;
    return clean;
}

/// A box that a clean run does not show, or the reason where the operator sees it.
bool told(Shop_floor& shop, const Clean_run& clean) {
    const configure_IO_lite& form = shop.all().configure_form;
    const std::string seen = shop.log() + shop.status() + form.name_hint.caption() +
                             form.wiring.device_hint.caption() +
                             shop.window().state_field.view().advice;
    return std::ranges::any_of(
               shop.boxes().shown(),
               [&](const Message& box) { return !clean.boxes.contains(box.text); }) ||
           seen.find("Input/output error") != std::string::npos ||
           seen.find("could not be read") != std::string::npos;
}

/// A disk of which each of the files that are not safe is as it is now, or as the power cut leaves
/// it: all of them, all but one, each alone.
std::vector<Disk> after_power_cut(const Disk_watch& watch) {
    std::vector<Disk> disks = {watch.safe()};
    const auto take = [](const Disk& from, const std::string& path, Disk disk) {
        disk.erase(path);
        if (const auto file = from.find(path); file != from.end()) {
            disk.insert(*file);
        }
        return disk;
    };
    for (const Disk& other : {watch.now(), watch.safe()}) {
        for (const auto& [path, content] : other) {
            if (on(watch.now(), path) != on(watch.safe(), path)) {
                disks.push_back(take(watch.now(), path, watch.safe()));
                disks.push_back(take(watch.safe(), path, watch.now()));
            }
        }
    }
    return disks;
}

TEST(FaultSteps, APowerCutBetweenAnyTwoOperationsLosesNothing) {
    for (const Shop_job& job : shop_jobs()) {
        const Clean_run clean = clean_run(job);
        Shop_floor shop;
        furnish(shop, job.machine);
        Disk_watch watch(shop.desk.files);
        std::string staged, safely_staged;
        watch.on_step = [&] {
            SCOPED_TRACE(job.what + (" before " + watch.label));
            note_staged(watch.now(), staged);
            expect_whole(job, watch.now(), clean, staged);  // the process dies here
            note_staged(watch.safe(), safely_staged);
            for (const Disk& disk : after_power_cut(watch)) {
                expect_whole(job, disk, clean, safely_staged);
            }
        };
        run_job(shop, job);
        EXPECT_EQ(watch.count, clean.operations) << job.what;
        RecordProperty(job.what, clean.operations);
    }
}

TEST(FaultSteps, WhateverOperationFailsNothingIsLostAndItIsSaid) {
    const struct {
        const char* what;
        bool goes_on, only_writes;
    } kinds[] = {{"once", false, false}, {"from then on", true, false}, {"full", true, true}};
    for (const Shop_job& job : shop_jobs()) {
        const Clean_run clean = clean_run(job);
        for (const auto& kind : kinds) {
            bool failed = true;
            for (int at = 1; failed; ++at) {
                Shop_floor shop;
                furnish(shop, job.machine);
                Disk_watch watch(shop.desk.files);
                std::string label, staged;
                failed = false;
                watch.fails = [&](int number, bool writes) {
                    const bool now = (number == at || (kind.goes_on && number > at)) &&
                                     (writes || !kind.only_writes);
                    label = now && !failed ? watch.label : label;
                    failed = failed || number >= at;
                    return now;
                };
                watch.on_step = [&] { note_staged(watch.now(), staged); };
                run_job(shop, job);
                SCOPED_TRACE(job.what + (" fails " + std::string(kind.what)) + " at " +
                             std::to_string(at) + ": " + label);
                if (shop.state().unread_files.contains(file_names::settings)) {
                    continue;  // it is another machine's job
                }
                expect_whole(job, watch.now(), clean, staged);
                const bool as_after = std::ranges::all_of(clean.after, [&](const auto& file) {
                    return is_scratch(file.first) || file.first.ends_with("Reseqence data") ||
                           on(watch.now(), file.first) == file.second;
                });
                const bool wire = clean.wire.starts_with(shop.received());
                EXPECT_TRUE((as_after && wire) || told(shop, clean))
                    << "nothing is said: " << shop.log() << shop.received();
                EXPECT_TRUE(shop.idle());
            }
        }
    }
}

}  // namespace
}  // namespace kelvane::testing
