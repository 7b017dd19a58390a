#pragma once
// Script errors as scripts see them: a struct {message, longMessage, script, line} whose text is "[[WBKSLException]]", handed to the
// function that was given to exception_unhandled_handler().
#include "runtime/reports/report.h"
#include "runtime/values/value.h"

namespace arena {

RValue exception_value(const WBKSLException& error);
// Calls the scripts' handler, if there is one. An error in the handler itself comes out as WBKSLException.
void tell_unhandled_error(const WBKSLException& error);
// The function that scripts want to be told by; undefined for none.
void set_unhandled_handler(const RValue& function);

}  // namespace arena
