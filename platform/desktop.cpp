#include "platform/desktop.h"

#include "platform/error_trap.h"
#include "platform/values/number_text.h"
#include "platform/values/text.h"

namespace pxtarvo {

namespace {

Message reportOf(const RuntimeError& error) {
    return {.text = joined({"Error '", plainNumber(error.number()), "' en tiempo de ejecución:\r\n\r\n",
                            error.description()}),
            .icon = MessageIcon::Critical};
}

}  // namespace

Desktop::Desktop() : outOfMemory_(reportOf(RuntimeError(ErrorNumber::OutOfMemory))) {}

MessageAnswer Desktop::messageBox(const Message& message) {
    ++messagesShown_;
    return insisted([&] { return showMessage(message); });
}

void Desktop::reportError(const RuntimeError& error) {
    if (error.is(ErrorNumber::OutOfMemory)) {
        messageBox(outOfMemory_);
    } else {
        messageBox(insisted([&] { return reportOf(error); }));
    }
}

}  // namespace pxtarvo
