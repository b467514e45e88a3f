// From: developer.apple.com, "NSWindow", "NSWindowDelegate". Checked against: objc2's icrate,
// AppKit/NSWindow.rs (generated from the SDK's headers, MIT).
#pragma once

#import <AppKit/NSAlert.h>
#import <AppKit/NSApplication.h>

NS_ASSUME_NONNULL_BEGIN

@class NSColor;
@class NSScreen;
@class NSView;
@protocol NSWindowDelegate;

typedef NS_OPTIONS(NSUInteger, NSWindowStyleMask) {
  NSWindowStyleMaskTitled = 1 << 0,
  NSWindowStyleMaskClosable = 1 << 1,
  NSWindowStyleMaskMiniaturizable = 1 << 2,
  NSWindowStyleMaskResizable = 1 << 3,
  NSWindowStyleMaskNonactivatingPanel = 1 << 7,
  NSWindowStyleMaskFullSizeContentView = 1 << 15,
};

typedef NS_ENUM(NSUInteger, NSBackingStoreType) {
  NSBackingStoreBuffered = 2,
};

typedef NS_OPTIONS(NSUInteger, NSWindowCollectionBehavior) {
  NSWindowCollectionBehaviorCanJoinAllSpaces = 1 << 0,
  NSWindowCollectionBehaviorStationary = 1 << 4,
  NSWindowCollectionBehaviorIgnoresCycle = 1 << 6,
  NSWindowCollectionBehaviorFullScreenAuxiliary = 1 << 8,
};

typedef NSInteger NSWindowLevel;
static const NSWindowLevel NSModalPanelWindowLevel = 8;
static const NSWindowLevel NSStatusWindowLevel = 25;

typedef NSString* NSWindowFrameAutosaveName;

@interface NSWindow : NSResponder
- (instancetype)initWithContentRect:(NSRect)contentRect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backingStoreType
                              defer:(BOOL)flag NS_DESIGNATED_INITIALIZER;
@property(copy) NSString* title;
@property BOOL titlebarAppearsTransparent;
@property(nullable, strong) __kindof NSView* contentView;
@property(nullable, weak) id<NSWindowDelegate> delegate;
@property(readonly) NSRect frame;
@property NSSize minSize;
@property(getter=isReleasedWhenClosed) BOOL releasedWhenClosed;
@property BOOL hidesOnDeactivate;
@property(getter=isMovableByWindowBackground) BOOL movableByWindowBackground;
@property(null_resettable, copy) NSColor* backgroundColor;
@property(getter=isOpaque) BOOL opaque;
@property BOOL hasShadow;
@property NSWindowLevel level;
@property NSWindowCollectionBehavior collectionBehavior;
@property(readonly, getter=isVisible) BOOL visible;
@property(readonly, getter=isMiniaturized) BOOL miniaturized;
@property(readonly) BOOL canBecomeMainWindow;
@property(nullable, readonly, strong) NSWindow* attachedSheet;
- (void)setFrameOrigin:(NSPoint)point;
- (BOOL)setFrameAutosaveName:(NSWindowFrameAutosaveName)name;
- (void)center;
- (void)makeKeyAndOrderFront:(nullable id)sender;
- (void)orderFrontRegardless;
- (void)orderOut:(nullable id)sender;
- (void)miniaturize:(nullable id)sender;
- (void)deminiaturize:(nullable id)sender;
- (void)zoom:(nullable id)sender;
- (void)performWindowDragWithEvent:(NSEvent*)event;
@property(nullable, assign) NSView* initialFirstResponder;
- (BOOL)makeFirstResponder:(nullable NSResponder*)responder;
- (void)endSheet:(NSWindow*)sheetWindow;
@end

@protocol NSWindowDelegate <NSObject>
@optional
- (void)windowDidMove:(NSNotification*)notification;
@end

NS_ASSUME_NONNULL_END
