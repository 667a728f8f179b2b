#pragma once

#include <QByteArray>

// What the fake engine is told to do by more than one screen's tests; fake_engine.cpp tells the commands.

/// An engine that prints two timed lines of 30 seconds of audio.
inline const QByteArray twoLines = "print main%3A processing 'a.wav' (480000 samples, 30.0 sec), 4 threads%0A\n"
                                   "print [00%3A00%3A00.000 --> 00%3A00%3A15.000]   - One%0A\n"
                                   "print [00%3A00%3A15.000 --> 00%3A00%3A30.000]   Two%0A\n";
