#include "responder/GResponder.h"

constinit zmr::Immortal<GCommandSet> GResponder::commands_;
constinit bool GResponder::command_set_changed_ = false;

void GResponder::SetCommandState(unsigned long id, GCommandState state)
{
    if (GetCommandState(id) == state)
        return;
    commands_->set(id, state);
    command_set_changed_ = true;
}

void GResponder::GetCommands(GCommandSet& out)
{
    out = *commands_;
}

void GResponder::SetCommands(const GCommandSet& commands)
{
    if (commands == *commands_)
        return;
    *commands_ = commands;
    command_set_changed_ = true;
}
