/// @file zylViewCommands.h
/// What keys change of the displays of all datasets. Takes effect with the update of the cases.
#ifndef zylViewCommands_h
#define zylViewCommands_h

#include "zylViewCases.h"

/// Color by the next (1) or previous (-1) array of any dataset, wherever it exists; solid colors
/// come after the last one.
void zylColorByNextArray(const zylViewCaseList& cases, int direction);

/// The next of the color maps that suit results.
void zylUseNextColorMap(const zylViewCaseList& cases);

void zylToggleLegend(const zylViewCaseList& cases);
void zylToggleMesh(const zylViewCaseList& cases);

#endif
