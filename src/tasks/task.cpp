#include "tasks/task.h"

Task::~Task() = default;
