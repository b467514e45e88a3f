// GoogleTest wants it to be there; nothing in it is asked for.
#pragma once
