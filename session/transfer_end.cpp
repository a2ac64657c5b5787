#include "session/transfer_end.h"

#include <utility>

namespace kelvane {

Transfer_end end_with(Outcome outcome, Message box) {
    Transfer_end end;
    end.outcome = outcome;
    end.box = std::move(box);
    return end;
}

Transfer_end end_with(Fault fault) {
    return end_with(Outcome::fault, critical_box(std::string(fault_text(fault))));
}

void add_remark(Transfer_end& end, const std::string& remark) {
    if (remark.empty()) {
        return;
    }
    end.remarks += (end.remarks.empty() ? "" : "\n") + remark;
    end.log = remark + (end.log.empty() ? "" : "\r\n\r\n" + end.log);
}

Message critical_box(std::string text, std::string title) {
    return {std::move(text), std::move(title), Message_icon::critical, Message_buttons::ok};
}

Message warning_box(std::string text, std::string title) {
    return {std::move(text), std::move(title), Message_icon::exclamation, Message_buttons::ok};
}

}  // namespace kelvane
