#include "resequence/report.h"

#include "resequence/goto_table.h"

namespace kelvane {

namespace {

const std::string rule = std::string(50, '-') + "\n";

struct Refusal_words {
    std::string operator()(const Resequenced& /*done*/) const { return {}; }
    std::string operator()(Resequence_cancelled /*cancelled*/) const { return {}; }
    std::string operator()(Maximum_with_gotos /*refused*/) const {
        return "Can't set maximum N# when\nresequencing GOTO statements";
    }
    std::string operator()(const Unresolved_goto& jump) const {
        return "Cannot resolve GOTO" + jump.target + "\nwith an existing N-number" +
               (jump.at_line_end ? "." : "");
    }
    std::string operator()(Fault fault) const {
        const std::string name(fault_text(fault));
        return fault == Fault::subscript_out_of_range
                   ? name + ": the program has GOTOs to more than " +
                         std::to_string(Goto_table::capacity) + " different N-numbers."
                   : name + ": the N-numbers become too great.";
    }
};

}  // namespace

std::string refusal_text(const Resequence_result& result) {
    return std::visit(Refusal_words(), result);
}

std::string success_report(const std::string& filename, const std::string& backup) {
    return "File " + filename + " has been resequenced.\nThe original file in now named '" +
           backup + "'.\n" + rule;
}

std::string failure_report(const std::string& filename, const std::string& reason) {
    return "File " + filename + " has not been resequenced and is as it was.\n" + reason + "\n" +
           rule;
}

}  // namespace kelvane
