#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

/** What a benchmark found: how many times as much the other one needs as ours does. */
struct ContestResult {
    QString work;
    QString against;
    double ratio = 0;
    QString goal;
};

/** What there is to measure of one side: returns what it needed, in seconds or in bytes. */
using Measure = std::function<double()>;

/** Runs both sides in turn, five times, and returns the ratio of the medians: above 1, ours needs less. */
double contest(const Measure& ours, const Measure& theirs);

/** The seconds that the action takes. */
double timed(const std::function<void()>& action);
/** Runs a program to its end and returns the seconds it took; ends the benchmark when it fails. */
double timedProgram(const QString& program, const QStringList& arguments, const QString& folder = {});
/** Bytes of memory that this process has in use. */
double residentBytes();
/** Runs this program again with "--memory what" and returns the bytes that it prints. */
double memoryOf(const QString& what);
/** What such a run prints: by how much the process grows when it parses. */
double parsingMemory(const QString& what);

QVector<ContestResult> benchIndex();
QVector<ContestResult> benchScan();
QVector<ContestResult> benchDownload();
QVector<ContestResult> benchStaging();
QVector<ContestResult> benchStart();
QVector<ContestResult> benchTransfer();
QVector<ContestResult> benchVerify();
/** How well the download limit is kept: the mean of half a minute, and the fastest second. */
QVector<ContestResult> benchLimit();
