#pragma once

#import <CoreGraphics/CGEventSource.h>
#import <CoreGraphics/CGGeometry.h>
