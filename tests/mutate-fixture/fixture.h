#pragma once

int percent(int part, int whole);
int stepsTo(long long limit, long long step);
bool isBlank(const char *text);
int blankChecks();
