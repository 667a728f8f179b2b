#pragma once

/// As precompiled.h, for the programs that show QML.

#include "precompiled.h"
#include <QAccessible>
#include <QGuiApplication>
#include <QImage>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
