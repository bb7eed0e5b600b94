#pragma once

#include "cli/arguments.h"

#include <QCoreApplication>

#include <memory>

namespace ktr::cli {

// The commands of ktrcli. For each, describe...() adds its options and its help text, check...() complains
// about wrong usage before anything is done, and the function itself carries it out and returns the exit
// code.

void describeNewFile(Arguments &arguments);
int newFile(const Arguments &arguments);

void describeConvert(Arguments &arguments);
int convert(const Arguments &arguments);

void describeCommands(Arguments &arguments);
int commands(const Arguments &arguments);

void describeCheck(Arguments &arguments);
int check(const Arguments &arguments);

void describeCompare(Arguments &arguments);
std::optional<int> checkCompare(const Arguments &arguments);
int compare(const Arguments &arguments);

void describeForetell(Arguments &arguments);
std::optional<int> checkForetell(const Arguments &arguments);
int foretellFile(const Arguments &arguments);

void describeFields(Arguments &arguments);
std::optional<int> checkFields(const Arguments &arguments);
int fields(const Arguments &arguments);

void describeGet(Arguments &arguments);
std::optional<int> checkGet(const Arguments &arguments);
int get(const Arguments &arguments);

void describeSet(Arguments &arguments);
std::optional<int> checkSet(const Arguments &arguments);
int set(const Arguments &arguments);

void describeSeries(Arguments &arguments);
std::optional<int> checkSeries(const Arguments &arguments);
int series(const Arguments &arguments);

void describeTransmit(Arguments &arguments);
std::optional<int> checkTransmit(const Arguments &arguments);
int transmit(const Arguments &arguments);

void describeTransmissions(Arguments &arguments);
std::optional<int> checkTransmissions(const Arguments &arguments);
int transmissions(const Arguments &arguments);

void describeSend(Arguments &arguments);
std::optional<int> checkSend(const Arguments &arguments);
int send(const Arguments &arguments);

void describeFirmware(Arguments &arguments);
std::optional<int> checkFirmware(const Arguments &arguments);
int firmware(const Arguments &arguments);

void describeHistory(Arguments &arguments);
std::optional<int> checkHistory(const Arguments &arguments);
int history(const Arguments &arguments);

void describeSimulate(Arguments &arguments);
std::optional<int> checkSimulate(const Arguments &arguments);
int simulate(const Arguments &arguments);

void describeMonitor(Arguments &arguments);
std::optional<int> checkMonitor(const Arguments &arguments);
int monitor(const Arguments &arguments);

void describeKeep(Arguments &arguments);
std::optional<int> checkKeep(const Arguments &arguments);
int keep(const Arguments &arguments);

void describeRecord(Arguments &arguments);
std::optional<int> checkRecord(const Arguments &arguments);
int record(const Arguments &arguments);

void describePorts(Arguments &arguments);
int ports(const Arguments &arguments);

void describePrintFile(Arguments &arguments);
std::optional<int> checkPrintFile(const Arguments &arguments);
int printFile(const Arguments &arguments);

/// The application object of a command that draws texts: it knows fonts and needs no display. `argc` must
/// outlive it.
std::unique_ptr<QCoreApplication> drawingApplication(int &argc, char **argv);

} // namespace ktr::cli
