// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

class AccessibleText;
class CGContext;
class GestureArena;
class NSLayoutConstraint;
class NSLayoutDimension;
class NSLayoutXAxisAnchor;
class NSLayoutYAxisAnchor;
class UIActivityIndicatorView;
class UIApplication;
class UICollectionView;
class UICollectionViewCell;
class UIColorWell;
class UIControl;
class UIDatePicker;
class UIGestureRecognizer;
class UILayoutGuide;
class UINavigationController;
class UIPageControl;
class UIPickerView;
class UIPopoverPresentationController;
class UIPresentationController;
class UIProgressView;
class UIResponder;
class UIScene;
class UIScrollView;
class UISearchBar;
class UISegmentedControl;
class UISheetPresentationController;
class UISlider;
class UISplitViewController;
class UIStepper;
class UISwitch;
class UITabBarController;
class UITableView;
class UITableViewCell;
class UITextField;
class UITextView;
class UIView;
class UIViewController;
class SubviewBounds;
class UIWindow;
class UIWindowScene;

enum class UILayoutAxis;
struct LayoutState;
struct UIPress;
struct UIScrollWheel;
struct UITouch;

} // namespace platform
