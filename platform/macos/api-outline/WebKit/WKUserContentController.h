// From: developer.apple.com, "WKUserContentController", "WKUserScript", "WKScriptMessage",
// "WKScriptMessageHandler", "WKContentWorld". Checked against: objc2-web-kit, WKUserContentController.rs,
// WKUserScript.rs, WKContentWorld.rs; xamarin-macios src/wkwebkit.cs.
#pragma once

#import <WebKit/WKNavigation.h>

NS_ASSUME_NONNULL_BEGIN

@class WKUserContentController;

API_AVAILABLE(macos(11.0))
@interface WKContentWorld : NSObject
+ (WKContentWorld*)worldWithName:(NSString*)name;
@property(class, nonatomic, readonly) WKContentWorld* pageWorld;
@end

typedef NS_ENUM(NSInteger, WKUserScriptInjectionTime) {
  WKUserScriptInjectionTimeAtDocumentStart = 0,
};

@interface WKUserScript : NSObject <NSCopying>
- (instancetype)initWithSource:(NSString*)source
                 injectionTime:(WKUserScriptInjectionTime)injectionTime
              forMainFrameOnly:(BOOL)forMainFrameOnly
                inContentWorld:(WKContentWorld*)contentWorld API_AVAILABLE(macos(11.0));
@end

@interface WKScriptMessage : NSObject
@property(nonatomic, readonly, copy) id body;
@property(nonatomic, readonly, copy) WKFrameInfo* frameInfo;
@property(nonatomic, readonly, copy) NSString* name;
@end

@protocol WKScriptMessageHandler <NSObject>
@required
- (void)userContentController:(WKUserContentController*)userContentController
      didReceiveScriptMessage:(WKScriptMessage*)message;
@end

@interface WKUserContentController : NSObject
- (void)addUserScript:(WKUserScript*)userScript;
- (void)addScriptMessageHandler:(id<WKScriptMessageHandler>)scriptMessageHandler
                   contentWorld:(WKContentWorld*)world
                           name:(NSString*)name API_AVAILABLE(macos(11.0));
- (void)removeAllScriptMessageHandlers API_AVAILABLE(macos(11.0));
@end

NS_ASSUME_NONNULL_END
