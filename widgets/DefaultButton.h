#pragma once

class QPushButton;

/// Makes Enter press this button of its dialog from now on.
///
/// A focus on another button moves to it, since a button with the focus is what Enter presses; a
/// focus in a field stays there.
void makeDefault(QPushButton* button);
