#pragma once

// What stands at the terminals of a channel: the electrical side of a sensor.

#include "sim/held_settings.h"
#include "sim/random.h"
#include "sim/scenario.h"

namespace kavorix::sim {

// A source as its terminals show it. Exactly one of the kinds applies; the other values are 0.
struct Terminals {
    bool open = false;       // nothing connected
    double volts = 0.0;      // of a voltage source
    double amperes = 0.0;    // of a current source
    double ohms = 0.0;       // of a resistance, without its leads
    double lead_ohms = 0.0;  // of each lead
    double bridge = 0.0;     // output of a strain gauge bridge, volts for each volt across it
    bool is_bridge = false;
    bool is_source = false;  // voltage or current
};

// Temperature of the pod's terminals.
double ambient_at(const PodSettings& pod, double time_s);

// The sensor that is meant by `Auto` on a channel in this mode.
SensorKind sensor_for_mode(int mode);

// The gauges of a strain mode (60..67) that are active: 1, 2 or 4.
int active_gauges(int mode);

// The terminals of a channel (1-based) at a moment.
Terminals terminals_at(const PodSettings& pod, int channel, const HeldSettings& held,
                       const RandomSource& random, double time_s);

// Value of a polynomial, coefficient i multiplying the i-th power.
double polynomial_value(const Coefficients& coefficients, double x);

}  // namespace kavorix::sim
