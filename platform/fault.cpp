#include "platform/fault.h"

namespace kelvane {

std::string_view fault_text(Fault fault) {
    switch (fault) {
        case Fault::subscript_out_of_range:
            return "Subscript out of range";
        case Fault::overflow:
            return "Overflow";
        case Fault::unexpected:
            return "Unexpected fault; what was going on has ended";
        case Fault::invalid_argument:
            break;
    }
    return "Invalid procedure call or argument";
}

}  // namespace kelvane
