#pragma once

#include <QObject>
#include <QProcessEnvironment>

/** What Wine processes need to know. One object, reached through Settings::getWineManager(). Main thread. */
class WineManager : public QObject
{
    Q_OBJECT

public:
    explicit WineManager(QObject* parent = nullptr) : QObject(parent) {}

    /** Where the Wine runtime lives: its programs are in "bin" below. */
    QString getStagingFolder() const;

    /** The launcher's own environment with the variables of the prefix put in. */
    QProcessEnvironment getWineProcessEnvironment() const;
};
