#pragma once

#include <QCoreApplication>
#include <QStringList>

#include <memory>

namespace ktr::cli {

// The commands of ktrcli. Each takes the words behind its name and gives the exit code.

int newFile(const QStringList &words);
int convert(const QStringList &words);
int commands(const QStringList &words);
int check(const QStringList &words);
int compare(const QStringList &words);
int transmit(const QStringList &words);
int send(const QStringList &words);
int simulate(const QStringList &words);
int monitor(const QStringList &words);
int ports(const QStringList &words);
int printFile(const QStringList &words);

/// The application object of a command that draws texts: it knows fonts and needs no display. `argc` must
/// outlive it.
std::unique_ptr<QCoreApplication> drawingApplication(int &argc, char **argv);

} // namespace ktr::cli
