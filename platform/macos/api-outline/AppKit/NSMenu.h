// From: developer.apple.com, "NSMenu", "NSMenuItem", "NSMenuItemValidation". Checked against: objc2's
// icrate, AppKit/NSMenu.rs and NSMenuItem.rs (generated from the SDK's headers, MIT).
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@class NSMenu;

typedef NSInteger NSControlStateValue;
enum : NSControlStateValue { NSControlStateValueOff = 0, NSControlStateValueOn = 1 };

@interface NSMenuItem : NSObject <NSCopying>
+ (NSMenuItem*)separatorItem;
- (instancetype)initWithTitle:(NSString*)string
                       action:(nullable SEL)selector
                keyEquivalent:(NSString*)charCode NS_DESIGNATED_INITIALIZER;
@property(nullable, strong) NSMenu* submenu;
@property(copy) NSString* title;
@property(copy) NSString* keyEquivalent;
@property NSControlStateValue state;
@property(getter=isHidden) BOOL hidden;
@property(getter=isEnabled) BOOL enabled;
@property(getter=isSeparatorItem, readonly) BOOL separatorItem;
@property(nullable, weak) id target;
@property(nullable) SEL action;
@end

@interface NSMenu : NSObject <NSCopying>
- (instancetype)initWithTitle:(NSString*)title NS_DESIGNATED_INITIALIZER;
- (void)insertItem:(NSMenuItem*)newItem atIndex:(NSInteger)index;
- (void)removeItem:(NSMenuItem*)item;
- (NSInteger)indexOfItem:(NSMenuItem*)item;
- (NSInteger)indexOfItemWithTitle:(NSString*)title;
@property(copy) NSArray<NSMenuItem*>* itemArray;
- (void)performActionForItemAtIndex:(NSInteger)index;
- (void)cancelTrackingWithoutAnimation API_AVAILABLE(macos(10.6));
- (void)update;
@end

extern NSNotificationName NSMenuDidBeginTrackingNotification;

@protocol NSMenuItemValidation <NSObject>
- (BOOL)validateMenuItem:(NSMenuItem*)menuItem;
@end

NS_ASSUME_NONNULL_END
