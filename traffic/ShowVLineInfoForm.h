#pragma once

#include "traffic/VLineInfo.h"

#include <QDialog>

/// Displays the nodes of one data path.
class ShowVLineInfoForm : public QDialog
{
    Q_OBJECT

public:
    ShowVLineInfoForm(const VLineItems& path, QWidget* parent);
};
