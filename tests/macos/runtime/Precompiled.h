// SPDX-License-Identifier: MIT
// What nearly every source of the program includes. The check for a Mac compiles without it, so nothing hides here.
#pragma once

#include <QCoroFuture>
#include <QCoroTask>

#include <QByteArray>
#include <QFuture>
#include <QPromise>
#include <QString>
#include <QStringList>
#include <QWidget>
#include <QWindow>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#import <AppKit/AppKit.h>
#import <ApplicationServices/ApplicationServices.h>
#import <MapKit/MapKit.h>
