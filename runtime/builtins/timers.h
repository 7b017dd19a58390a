#pragma once
// Alarms of an instance, by number or by name, and timers that call a function.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(alarm_get, Number(AlarmName), "alarm", "The frames until an alarm of the caller runs; -1 when it is off.");
BUILTIN(alarm_set, void(AlarmName, Number), "alarm, frames",
        "Starts an alarm of the caller, a number from 0 to 11 or the name of one of its Alarm events; below 0 stops it.");
BUILTIN(timer_create_frames, Timer(Whole, Function, Or<Whole, 1>, Or<Flag, false>), "frames, function, times, in_pause",
        "Calls function(timer) after so many frames, at least 1, and again as often as wanted; times below 1 are without end.");
BUILTIN(timer_create_seconds, Timer(Number, Function, Or<Whole, 1>, Or<Flag, false>), "seconds, function, times, in_pause",
        "Calls function(timer) after so many seconds of game time, and again as often as wanted; times below 1 are without end.");
BUILTIN(timer_destroy, void(Timer), "timer", "Ends a timer.");
BUILTIN(timer_exists, Flag(Whole), "timer", "Whether the timer still has something to do.");
BUILTIN(timer_get_left, Number(Timer), "timer", "The seconds or frames until its next call; 0 when it has ended.");
BUILTIN(timer_is_paused, Flag(Timer), "timer", "Whether the timer itself is paused.");
BUILTIN(timer_pause, void(Timer), "timer", "Lets its time stand still.");
BUILTIN(timer_restart, void(Timer), "timer", "Lets the time until its next call begin anew.");
BUILTIN(timer_resume, void(Timer), "timer", "Lets its time go on.");
BUILTIN(timers_are_paused, Flag(), "", "Whether all timers are paused.");
BUILTIN(timers_pause, void(), "", "Lets the time of all timers stand still, but of those made for a pause.");
BUILTIN(timers_resume, void(), "", "Lets the time of all timers go on that are not paused themselves.");

}  // namespace arena::script
