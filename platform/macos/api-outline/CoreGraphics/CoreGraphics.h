#pragma once

#import <CoreGraphics/CGGeometry.h>
