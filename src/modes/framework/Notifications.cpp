#include "modes/framework/Notifications.h"

#include "util/World.h"

Notifications& Notifications::sharedInstance() {
    return World::current().shared<Notifications>();
}
