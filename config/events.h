#pragma once

#include <cstdint>

#include "config/record.h"

/// The events that have a job of their own: 0 to 21 are those of a UPS, 22 to 29 those of a sensor.
/// What the program knows about an event stands in its row. The 64 events of a group are another
/// thing: an operator makes them up.

/// Events of a UPS. They come first among the jobs, and only they are edited in the menus.
constexpr int ups_event_count = 22;

/// The first three values are numbers of texts in a language file.
struct Event {
  std::uint16_t name;      // on the screens; 0 for the events of sensors, which no screen shows
  std::uint16_t message;   // of a job that has its defaults
  std::uint16_t sentence;  // the same in a whole sentence, where there is one
  bool begins;             // something that lasts; its local message may be repeated
  bool offers_shutdown;    // the screen of its job lets the operator switch the shutdown on
  bool keeps_shutdown;     // the switch is loaded from jobs.ini; otherwise loading turns it off
};

// Events 2 and 4 announce a shutdown that is under way, so they cannot cause one. The ends (odd
// numbers) can be switched on in the menus and saved, but the next start turns them off again.
// Among the sensors the loader goes by odd and even too, although 24 is an end and 23 and 25 begin.
//
// The message of event 2 asks users to save their work, which its name does not say.
//
// clang-format off
constexpr Event events[job_count] = {
    //  texts
    // name message sentence  begins offers keeps
    {   79,     79,     400,   true,  true,  true},  //  0 power failure
    {   80,     80,     401,  false,  true, false},  //  1 power restored
    {   81,    341,     402,   true, false, false},  //  2 system shutdown started
    {   82,     82,     403,  false,  true, false},  //  3 system shutdown cancelled
    {   83,     83,     404,   true, false, false},  //  4 UPS shutdown started
    {   84,     84,     405,  false,  true, false},  //  5 UPS shutdown cancelled
    {   85,     85,     406,   true,  true,  true},  //  6 battery low
    {   86,     86,     407,  false,  true, false},  //  7 battery charged again
    {   87,     87,     408,   true,  true,  true},  //  8 overload
    {   88,     88,     409,  false,  true, false},  //  9 overload ended
    {   89,     89,     410,   true,  true,  true},  // 10 temperature of the UPS too high
    {   90,     90,     411,  false,  true, false},  // 11 temperature of the UPS normal
    {   91,     91,     412,   true,  true,  true},  // 12 bypass on
    {   92,     92,     413,  false,  true, false},  // 13 bypass off
    {   93,     93,     414,   true,  true,  true},  // 14 fault
    {   94,     94,     415,  false,  true, false},  // 15 fault ended
    {   95,     95,     416,   true,  true,  true},  // 16 communication lost
    {   96,     96,     417,  false,  true, false},  // 17 communication restored
    {   97,     97,     418,   true,  true,  true},  // 18 battery test failed
    {   98,     98,     419,  false,  true, false},  // 19 battery test passed
    {   99,     99,     420,   true,  true,  true},  // 20 sensor alarm
    {  100,    100,     421,  false,  true, false},  // 21 sensor alarm ended
    {    0,    384,     384,   true,  true,  true},  // 22 humidity too high
    {    0,    385,     385,   true,  true, false},  // 23 humidity too low
    {    0,    386,     386,  false,  true,  true},  // 24 humidity normal
    {    0,    387,     387,   true,  true, false},  // 25 temperature too high
    {    0,    388,     388,   true,  true,  true},  // 26 temperature too low
    {    0,    389,     389,  false,  true, false},  // 27 temperature normal
    {    0,    390,     390,   true,  true,  true},  // 28 sensor input alarm
    {    0,    391,     391,  false,  true, false},  // 29 sensor input normal
};
// clang-format on
